// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderPicture.h"

#include "FolderEntries.h"

#include <QHashFunctions>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>

namespace lumbra::events {

namespace {

// Times on disk move in steps of the kernel's tick. A file that changed within the last steps may change again
// without showing it, so its stamp is spoilt and the next look reports it once more.
constexpr qint64 settlingNanoseconds = 50'000'000;

// Since 1970. Of far away years, which do not fit, just some number.
qint64 nanoseconds(const statx_timestamp& time) {
    return qint64(quint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec);
}

quint64 stampOf(const struct statx& facts, qint64 now) {
    if (S_ISDIR(facts.stx_mode))
        return facts.stx_ino;
    const qint64 changed = nanoseconds(facts.stx_ctime);
    const bool settling = changed > now - settlingNanoseconds && changed <= now;
    return qHashMulti(settling ? size_t(now) : 0, facts.stx_mode, facts.stx_ino, facts.stx_size,
                      nanoseconds(facts.stx_mtime), changed);
}

} // namespace

FolderPicture FolderPicture::take(const std::string& folder) {
    FolderPicture picture;
    timespec clock;
    ::clock_gettime(CLOCK_REALTIME, &clock);
    const qint64 now = clock.tv_sec * 1'000'000'000 + clock.tv_nsec;
    forEachEntry(folder, [&](int descriptor, const char* name, unsigned char) {
        struct statx facts;
        if (::statx(descriptor, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                    STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_CTIME, &facts)
            != 0)
            return;
        const std::string_view text(name);
        picture.m_entries.push_back(
            {quint32(picture.m_names.size()), quint16(text.size()), S_ISDIR(facts.stx_mode) != 0, stampOf(facts, now)});
        picture.m_names += text;
    });
    std::ranges::sort(picture.m_entries, {}, [&](const Entry& entry) { return picture.nameOf(entry); });
    picture.m_entries.shrink_to_fit();
    picture.m_names.shrink_to_fit();
    return picture;
}

std::vector<FolderPicture::Difference> FolderPicture::differencesTo(const FolderPicture& now) const {
    std::vector<Difference> differences;
    auto before = m_entries.begin();
    auto after = now.m_entries.begin();
    while (before != m_entries.end() || after != now.m_entries.end()) {
        const int order = before == m_entries.end()      ? 1
                          : after == now.m_entries.end() ? -1
                                                         : nameOf(*before).compare(now.nameOf(*after));
        if (order < 0) {
            differences.push_back({std::string(nameOf(*before)), Difference::Kind::vanished, before->isFolder, false});
            ++before;
        } else if (order > 0) {
            differences.push_back(
                {std::string(now.nameOf(*after)), Difference::Kind::appeared, false, after->isFolder});
            ++after;
        } else {
            if (before->stamp != after->stamp || before->isFolder != after->isFolder)
                differences.push_back(
                    {std::string(nameOf(*before)), Difference::Kind::changed, before->isFolder, after->isFolder});
            ++before;
            ++after;
        }
    }
    return differences;
}

std::vector<std::string> FolderPicture::folders() const {
    std::vector<std::string> names;
    for (const Entry& entry : m_entries)
        if (entry.isFolder)
            names.emplace_back(nameOf(entry));
    return names;
}

} // namespace lumbra::events
