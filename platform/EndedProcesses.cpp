// SPDX-License-Identifier: GPL-3.0-or-later
#include "EndedProcesses.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <sys/wait.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace lumbra::EndedProcesses {

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

// One that is still there so long after it was killed hangs, if it is not just kept from the processor.
constexpr auto patience = 1s;

constexpr auto soon = 50ms;
constexpr auto later = 1s;

struct Ended {
    pid_t process;
    QByteArray file;
    Clock::time_point since;
};

struct List {
    std::mutex mutex;
    std::vector<Ended> entries;
};

List& list() {
    // Never destroyed: threads that end readers may outlive all else.
    static auto* const one = new List;
    return *one;
}

QByteArray textOf(const QString& file) {
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

// Some thread of it waits for what no signal interrupts.
bool hangs(pid_t process) {
    const QString tasks = QStringLiteral("/proc/%1/task/").arg(process);
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::ranges::any_of(threads, [&tasks](const QString& thread) {
        const QByteArray facts = textOf(tasks + thread + QStringLiteral("/stat"));
        return facts.mid(facts.lastIndexOf(')') + 2).startsWith('D');
    });
}

// Spaces and the like are written in octal there.
QByteArray withoutEscapes(const QByteArray& text) {
    QByteArray made;
    for (qsizetype at = 0; at < text.size(); ++at) {
        bool isNumber = false;
        const int code = text[at] == '\\' ? text.mid(at + 1, 3).toInt(&isNumber, 8) : 0;
        made += isNumber ? char(code) : text[at];
        at += isNumber ? 3 : 0;
    }
    return made;
}

QList<QByteArray> mounts() {
    constexpr qsizetype placeColumn = 4;
    QList<QByteArray> made;
    for (const QByteArray& line : textOf(QStringLiteral("/proc/self/mountinfo")).split('\n'))
        made.append(withoutEscapes(line.split(' ').value(placeColumn)));
    return made;
}

// Where the file system of the file is mounted, by the names alone.
QByteArray mountOf(const QByteArray& file, const QList<QByteArray>& mounts) {
    QByteArray best;
    for (const QByteArray& mount : mounts) {
        const bool isAbove = file.startsWith(mount) && (mount.endsWith('/') || file.mid(mount.size()).startsWith('/'));
        if (isAbove && mount.size() > best.size())
            best = mount;
    }
    return best;
}

} // namespace

void add(pid_t process, const QByteArray& file) {
    List& ended = list();
    const std::lock_guard lock(ended.mutex);
    ended.entries.push_back({process, file, Clock::now()});
}

std::optional<std::chrono::milliseconds> reap() {
    List& ended = list();
    const std::lock_guard lock(ended.mutex);
    std::erase_if(ended.entries, [](const Ended& entry) { return ::waitpid(entry.process, nullptr, WNOHANG) != 0; });
    if (ended.entries.empty())
        return std::nullopt;
    return Clock::now() - ended.entries.back().since < patience ? soon : later;
}

bool hangAt(const QByteArray& file) {
    std::vector<Ended> old;
    {
        List& ended = list();
        const std::lock_guard lock(ended.mutex);
        std::ranges::copy_if(ended.entries, std::back_inserter(old), [](const Ended& entry) {
            return !entry.file.isEmpty() && Clock::now() - entry.since >= patience;
        });
    }
    if (old.empty())
        return false;
    const QList<QByteArray> places = mounts();
    const QByteArray place = mountOf(file, places);
    return std::ranges::any_of(
        old, [&](const Ended& entry) { return mountOf(entry.file, places) == place && hangs(entry.process); });
}

} // namespace lumbra::EndedProcesses
