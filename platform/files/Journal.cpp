// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journal.h"

#include "Owner.h"
#include "Removal.h"
#include "platform/Descriptor.h"

#include <QDir>
#include <QHash>
#include <QUuid>

#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <optional>
#include <thread>

namespace lumbra::files {

using namespace std::chrono_literals;

namespace {

constexpr std::string_view partPrefix = ".lumbra-part-";
constexpr off_t longestJournal = 64 * 1024 * 1024; // bytes; what is longer is none of ours

// Others hold it for milliseconds; whoever holds it for longer must not hold up transfers.
constexpr auto patience = 2s;

std::optional<struct stat> facts(const Location& file) {
    struct stat status;
    if (::lstat(file.path().constData(), &status) != 0)
        return std::nullopt;
    return status;
}

// The journal, locked until it is closed. Invalid when there is none to be had.
Descriptor lockJournal(const Location& file) {
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Descriptor journal(::open(file.path().constData(),
                                  O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                                  S_IRUSR | S_IWUSR));
        struct stat opened;
        if (!journal || ::fstat(journal.number(), &opened) != 0 || !S_ISREG(opened.st_mode))
            return {};
        if (::flock(journal.number(), LOCK_EX | LOCK_NB) == 0) {
            // The one who held it may have put another file in its place.
            const auto named = facts(file);
            if (named && named->st_dev == opened.st_dev && named->st_ino == opened.st_ino)
                return journal;
        }
        if (std::chrono::steady_clock::now() > end)
            return {};
        std::this_thread::sleep_for(2ms);
    }
}

QByteArray contents(int journal) {
    struct stat status;
    if (::fstat(journal, &status) != 0 || status.st_size > longestJournal)
        return {};
    QByteArray text(status.st_size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < text.size()) {
        const ssize_t more = ::pread(journal, text.data() + filled, size_t(text.size() - filled), filled);
        if (more <= 0)
            break;
        filled += more;
    }
    text.truncate(filled);
    return text;
}

bool append(int file, const QByteArray& text) {
    for (qsizetype written = 0; written < text.size();) {
        const ssize_t more = ::write(file, text.constData() + written, size_t(text.size() - written));
        if (more < 0 && errno != EINTR)
            return false;
        written += std::max<ssize_t>(more, 0);
    }
    return true;
}

void syncFolderOf(const Location& file) {
    const Descriptor folder(::open(file.parent().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.number());
}

QByteArray lineFor(const QByteArray& owner, const Location& part) {
    return owner + ' ' + part.path().toPercentEncoding("/");
}

struct Note {
    QByteArray owner;
    Location part;
};

std::optional<Note> parsed(const QByteArray& line) {
    const qsizetype blank = line.lastIndexOf(' ');
    const auto part = Location::fromFileSystem(QByteArray::fromPercentEncoding(line.mid(blank + 1)).toStdString());
    if (blank < 0 || !part || !part->path().startsWith('/') || !isPartName(part->lastComponent()))
        return std::nullopt;
    return Note{line.left(blank), *part};
}

enum class Outcome { gone, left };

Outcome remove(const Location& part) {
    const Descriptor folder(::open(part.parent().path().constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return Outcome::left;
    const std::string name(part.lastComponent());
    return removeTree(folder.number(), name.c_str()) == 0 ? Outcome::gone : Outcome::left;
}

} // namespace

QByteArray partName() {
    return QByteArray(partPrefix.data(), partPrefix.size()) + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

bool isPartName(std::string_view name) {
    if (!name.starts_with(partPrefix))
        return false;
    const std::string_view rest = name.substr(partPrefix.size());
    const QByteArray id(rest.data(), qsizetype(rest.size()));
    const QUuid uuid = QUuid::fromString(QLatin1StringView(id));
    return !uuid.isNull() && uuid.toByteArray(QUuid::WithoutBraces) == id;
}

void Journal::note(const QList<Location>& parts) const {
    QDir().mkpath(m_file.parent().toString());
    const Descriptor journal = lockJournal(m_file);
    if (!journal)
        return;
    const QByteArray owner = Owner::self().toText();
    QByteArray text;
    for (const Location& part : parts)
        text += lineFor(owner, part) + '\n';
    // Whoever died while writing may have left half a line.
    const QByteArray before = contents(journal.number());
    if (!before.isEmpty() && !before.endsWith('\n'))
        text.prepend('\n');
    append(journal.number(), text);
    ::fsync(journal.number());
    if (before.isEmpty())
        syncFolderOf(m_file);
}

void Journal::forget(const QList<Location>& parts) const {
    const QByteArray owner = Owner::self().toText();
    QSet<QByteArray> lines;
    for (const Location& part : parts)
        lines.insert(lineFor(owner, part));
    drop(lines);
}

void Journal::drop(const QSet<QByteArray>& lines) const {
    if (lines.isEmpty() || !facts(m_file))
        return;
    const Descriptor journal = lockJournal(m_file);
    if (!journal)
        return;
    QByteArray kept;
    for (const QByteArray& line : contents(journal.number()).split('\n')) {
        if (!line.isEmpty() && !lines.contains(line))
            kept += line + '\n';
    }
    // Another file takes its place: written over, it would lose what others noted if this process died meanwhile.
    const QByteArray next = m_file.path() + ".next";
    ::unlink(next.constData()); // of one who did
    if (kept.isEmpty()) {
        ::unlink(m_file.path().constData());
        return;
    }
    const Descriptor written(::open(next.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (written && append(written.number(), kept) && ::fsync(written.number()) == 0)
        ::rename(next.constData(), m_file.path().constData());
}

void Journal::clean() const {
    if (!facts(m_file))
        return;
    const QByteArray text = [this] {
        const Descriptor journal = lockJournal(m_file);
        return journal ? contents(journal.number()) : QByteArray();
    }();
    QHash<QByteArray, bool> mayRun;
    QSet<QByteArray> done;
    for (const QByteArray& line : text.split('\n')) {
        const auto note = parsed(line);
        const auto owner = note ? Owner::fromText(note->owner) : std::nullopt;
        if (!owner) {
            done.insert(line);
            continue;
        }
        auto found = mayRun.find(note->owner);
        if (found == mayRun.end())
            found = mayRun.insert(note->owner, owner->mayRun());
        if (!*found && remove(note->part) == Outcome::gone)
            done.insert(line);
    }
    drop(done);
}

} // namespace lumbra::files
