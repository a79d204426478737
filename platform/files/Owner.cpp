// SPDX-License-Identifier: GPL-3.0-or-later
#include "Owner.h"

#include "platform/Descriptor.h"

#include <QList>

#include <array>

namespace lumbra::files {

namespace {

QByteArray contents(const QByteArray& path) {
    const Descriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    std::array<char, 1024> buffer;
    const ssize_t length = file ? ::read(file.number(), buffer.data(), buffer.size()) : -1;
    return length > 0 ? QByteArray(buffer.data(), length) : QByteArray();
}

struct Running {
    char state;
    quint64 started;
};

std::optional<Running> running(const QByteArray& process) {
    // The second field is the program's name in brackets and may hold blanks and brackets itself.
    const QByteArray text = contents("/proc/" + process + "/stat");
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(") ") + 2).split(' ');
    constexpr qsizetype startedAt = 19; // counted from the state
    if (fields.size() <= startedAt || fields[0].isEmpty())
        return std::nullopt;
    return Running{fields[0][0], fields[startedAt].toULongLong()};
}

QByteArray thisBoot() {
    return contents("/proc/sys/kernel/random/boot_id").trimmed();
}

QByteArray thisNumbering() {
    std::array<char, 64> name;
    const ssize_t length = ::readlink("/proc/self/ns/pid", name.data(), name.size());
    return length > 0 ? QByteArray(name.data(), length) : QByteArray();
}

} // namespace

Owner Owner::self() {
    const auto itself = running("self");
    return {thisBoot(), thisNumbering(), ::getpid(), itself ? itself->started : 0};
}

QByteArray Owner::toText() const {
    const auto word = [](const QByteArray& text) { return text.isEmpty() ? QByteArrayLiteral("-") : text; };
    return word(boot) + ' ' + word(numbering) + ' ' + QByteArray::number(process) + ' ' + QByteArray::number(started);
}

std::optional<Owner> Owner::fromText(const QByteArray& text) {
    const QList<QByteArray> words = text.split(' ');
    if (words.size() != 4)
        return std::nullopt;
    bool hasProcess = false;
    bool hasStart = false;
    Owner owner{words[0], words[1], words[2].toLongLong(&hasProcess), words[3].toULongLong(&hasStart)};
    if (!hasProcess || !hasStart || owner.process <= 0)
        return std::nullopt;
    return owner;
}

bool Owner::mayRun() const {
    const QByteArray now = thisBoot();
    if (now.isEmpty())
        return true; // nothing can be told here
    if (boot != now)
        return false;
    if (numbering != thisNumbering())
        return true;
    const auto found = running(QByteArray::number(process));
    return found && found->started == started && found->state != 'Z' && found->state != 'X';
}

} // namespace lumbra::files
