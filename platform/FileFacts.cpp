// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileFacts.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace lumbra {

std::optional<FileFacts> FileFacts::of(const Location& location) {
    return ofEntry(AT_FDCWD, location.path().constData());
}

std::optional<FileFacts> FileFacts::ofEntry(int folder, const char* name) {
    struct statx told;
    // Whatever a network file system knows by now will do; a million round trips would not.
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, STATX_TYPE | STATX_SIZE | STATX_MTIME, &told)
        != 0)
        return std::nullopt;
    FileFacts facts;
    facts.isFolder = S_ISDIR(told.stx_mode);
    facts.isRegularFile = S_ISREG(told.stx_mode);
    if (told.stx_mask & STATX_SIZE)
        facts.size = qint64(told.stx_size);
    if (told.stx_mask & STATX_MTIME)
        facts.modified = {double(told.stx_mtime.tv_sec) + told.stx_mtime.tv_nsec * 1e-9};
    return facts;
}

} // namespace lumbra
