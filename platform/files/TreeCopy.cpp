// SPDX-License-Identifier: GPL-3.0-or-later
#include "TreeCopy.h"

#include "Failure.h"

#include <dirent.h>
#include <linux/limits.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <thread>

namespace lumbra::files {

namespace {

constexpr int attempts = 3; // for a file that changes while it is copied

// Times of files move on in steps of some milliseconds. What is written twice within one looks unchanged the second
// time, so a file that was changed a moment ago is only read after the step has passed. True when it waited.
bool letClockPass(const struct stat& facts) {
    constexpr int64_t longestStep = 10'000'000; // nanoseconds
    timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    const int64_t seconds = now.tv_sec - facts.st_ctim.tv_sec;
    if (seconds < 0 || seconds > 1)
        return false;
    const int64_t age = seconds * 1'000'000'000 + (now.tv_nsec - facts.st_ctim.tv_nsec);
    if (age < 0 || age > longestStep)
        return false;
    std::this_thread::sleep_for(std::chrono::nanoseconds(longestStep - age));
    return true;
}

// Not every file system has modes and times; that the bytes arrive counts more.
void checkFact(int result, const char* name) {
    if (result != 0 && errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL)
        throw Failure(errno, name);
}

} // namespace

TreeCopy::Result TreeCopy::copy(int sourceFolder, const Entry& entry, int targetFolder, const char* copy,
                                Record record) {
    m_source = FolderCursor(sourceFolder);
    m_target = FolderCursor(targetFolder);
    m_levels.clear();
    m_record = record;
    m_result = {};
    m_bytes.begin();

    copyEntry(entry, copy);
    while (!m_levels.empty()) {
        m_meter.stopIfAsked();
        Level& level = m_levels.back();
        if (level.next == level.entries.size()) {
            leaveFolder();
        } else {
            const Entry next = std::move(level.entries[level.next++]);
            copyEntry(next, next.name);
        }
    }
    return std::move(m_result);
}

void TreeCopy::copyEntry(const Entry& entry, const std::string& copyName) {
    const char* const name = entry.name.c_str();
    unsigned char type = entry.type;
    if (type == DT_UNKNOWN) {
        struct stat facts;
        if (::fstatat(m_source.folder(), name, &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            if (mayBeGone(errno))
                return;
            throw Failure(errno, name);
        }
        type = typeOf(facts.st_mode);
    }
    switch (type) {
    case DT_REG:
        return copyFile(name, copyName.c_str());
    case DT_LNK:
        return copyLink(name, copyName.c_str());
    case DT_DIR:
        return enterFolder(entry.name, copyName);
    default:
        throw Failure(EOPNOTSUPP, name, QStringLiteral("it is neither a file nor a folder"));
    }
}

void TreeCopy::copyFile(const char* name, const char* copyName) {
    m_meter.begin(name);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Attempt result = copyFileOnce(name, copyName);
        if (result == Attempt::gone)
            return;
        if (result == Attempt::done)
            return m_meter.finish();
        if (::unlinkat(m_target.folder(), copyName, 0) != 0)
            throw Failure(errno, name);
        m_meter.beginAgain();
    }
    throw Failure(EAGAIN, name, QStringLiteral("it was being changed all the while"));
}

TreeCopy::Attempt TreeCopy::copyFileOnce(const char* name, const char* copyName) {
    // Should something else have taken the file's place since it was listed, opening must not wait for it.
    const Descriptor from(::openat(m_source.folder(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!from && mayBeGone(errno))
        return Attempt::gone;
    struct stat before;
    if (!from || ::fstat(from.number(), &before) != 0)
        throw Failure(errno, name);
    if (letClockPass(before) && ::fstat(from.number(), &before) != 0)
        throw Failure(errno, name);
    if (!S_ISREG(before.st_mode))
        throw Failure(ESTALE, name, QStringLiteral("something else took its place"));
    const Descriptor to(
        ::openat(m_target.folder(), copyName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!to)
        throw Failure(errno, name);

    m_bytes.copy(from.number(), to.number(), before, name);
    copyFacts(from.number(), to.number(), before, name);

    struct stat after;
    if (::fstat(from.number(), &after) != 0)
        throw Failure(errno, name);
    if (Stamp::of(before) != Stamp::of(after))
        return Attempt::changed; // the copy may be a mixture
    note(Copied::Kind::file, name, before);
    return Attempt::done;
}

void TreeCopy::copyLink(const char* name, const char* copyName) {
    m_meter.begin(name);
    struct stat facts;
    const bool isThere = ::fstatat(m_source.folder(), name, &facts, AT_SYMLINK_NOFOLLOW) == 0;
    if (!isThere && mayBeGone(errno))
        return;
    if (!isThere)
        throw Failure(errno, name);
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlinkat(m_source.folder(), name, target.data(), target.size() - 1);
    if (length < 0)
        throw Failure(errno, name);
    target[size_t(length)] = '\0';
    if (::symlinkat(target.data(), m_target.folder(), copyName) != 0)
        throw Failure(errno, name);
    const timespec times[] = {facts.st_atim, facts.st_mtim};
    checkFact(::utimensat(m_target.folder(), copyName, times, AT_SYMLINK_NOFOLLOW), name);
    note(Copied::Kind::file, name, facts);
    m_meter.finish();
}

void TreeCopy::enterFolder(const std::string& name, const std::string& copyName) {
    Level level{name, {}, {}};
    const int entered = m_source.enter(name.c_str());
    if (mayBeGone(entered))
        return;
    if (entered)
        throw Failure(entered, name);
    if (::fstat(m_source.folder(), &level.facts) != 0)
        throw Failure(errno, name);
    const Stamp stamp = Stamp::of(level.facts);
    if (stamp.device == m_top.device && stamp.inode == m_top.inode && !m_levels.empty())
        throw Failure(EINVAL, name, QStringLiteral("a folder can't go into itself"));
    if (const int code = listEntries(m_source.folder(), level.entries))
        throw Failure(code, name);

    // Its own mode comes at the end: it may forbid to fill it.
    if (::mkdirat(m_target.folder(), copyName.c_str(), S_IRWXU) != 0)
        throw Failure(errno, name);
    if (const int code = m_target.enter(copyName.c_str()))
        throw Failure(code, name);
    if (m_levels.empty()) {
        struct stat made;
        if (::fstat(m_target.folder(), &made) != 0)
            throw Failure(errno, name);
        m_top = Stamp::of(made);
    }
    note(Copied::Kind::folder, name.c_str(), level.facts);
    m_levels.push_back(std::move(level));
}

void TreeCopy::leaveFolder() {
    const Level level = std::move(m_levels.back());
    m_levels.pop_back();
    Descriptor from;
    Descriptor to;
    if (const int code = m_source.leave(from))
        throw Failure(code, level.name);
    if (const int code = m_target.leave(to))
        throw Failure(code, level.name);
    copyFacts(from.number(), to.number(), level.facts, level.name.c_str());
    note(Copied::Kind::folderEnd, "", level.facts);
}

// Folders are copied while others work in them; what they remove meanwhile is nothing to copy.
bool TreeCopy::mayBeGone(int code) const {
    return code == ENOENT && !m_levels.empty();
}

void TreeCopy::copyFacts(int from, int to, const struct stat& facts, const char* name) {
    if (m_attributes.copy(from, to, name) == AttributeCopy::Result::some)
        m_result.hasAllAttributes = false;
    // Not the rights to act as another user: the copy is this user's.
    const mode_t kept = S_ISDIR(facts.st_mode) ? 03777 : 0777;
    checkFact(::fchmod(to, facts.st_mode & kept), name);
    const timespec times[] = {facts.st_atim, facts.st_mtim};
    checkFact(::futimens(to, times), name);
}

void TreeCopy::note(Copied::Kind kind, const char* name, const struct stat& facts) {
    if (m_record == Record::manifest)
        m_result.manifest.push_back({kind, facts.st_nlink > 1, name, Stamp::of(facts)});
}

} // namespace lumbra::files
