// SPDX-License-Identifier: GPL-3.0-or-later
#include "Rename.h"

#include "Removal.h"
#include "platform/Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <tuple>

namespace lumbra::files {

namespace {

bool isUnknownFlag(int code) {
    return code == EINVAL || code == ENOSYS || code == EOPNOTSUPP;
}

std::optional<struct stat> facts(int folder, const char* name) {
    struct stat status;
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return status;
}

// For file systems that rename only by the oldest call, which replaces.
int renameCarefully(int fromFolder, const char* from, int toFolder, const char* to) {
    const auto source = facts(fromFolder, from);
    if (!source)
        return errno;
    if (facts(toFolder, to))
        return EEXIST;
    if (!S_ISDIR(source->st_mode)) {
        // A second name is refused when it is taken. If the first can't be given up, it alone stays.
        if (::linkat(fromFolder, from, toFolder, to, 0) == 0) {
            if (::unlinkat(fromFolder, from, 0) == 0)
                return 0;
            const int code = errno;
            ::unlinkat(toFolder, to, 0);
            return code;
        }
        if (errno == EEXIST || errno == EXDEV)
            return errno;
    }
    // Having looked is the best there is without links. A folder can at worst take the place of an empty one. To hold a
    // file's name with an empty file first would be worse: the process may end in between.
    return ::renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

// Both things take each other's name at once.
int exchange(int fromFolder, const char* from, int toFolder, const char* to) {
    if (::renameat2(fromFolder, from, toFolder, to, RENAME_EXCHANGE) == 0)
        return 0;
    if (errno != EACCES)
        return errno;
    // A folder that goes into another one must be writable itself, even if it only goes there to be removed.
    const Descriptor old = openFolder(toFolder, to);
    struct stat status;
    if (!old || ::fstat(old.number(), &status) != 0 || ::fchmod(old.number(), status.st_mode | S_IRWXU) != 0)
        return EACCES;
    if (::renameat2(fromFolder, from, toFolder, to, RENAME_EXCHANGE) == 0)
        return 0;
    const int code = errno;
    std::ignore = ::fchmod(old.number(), status.st_mode);
    return code;
}

} // namespace

int renameNoReplace(int fromFolder, const char* from, int toFolder, const char* to) {
    if (::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnknownFlag(errno))
        return errno;
    // EINVAL also says that a folder would go into itself; then this says so again.
    return renameCarefully(fromFolder, from, toFolder, to);
}

int renameReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
    if (const int code = renameNoReplace(fromFolder, from, toFolder, to); code != EEXIST)
        return code;
    const auto source = facts(fromFolder, from);
    const auto target = facts(toFolder, to);
    if (source && target && !S_ISDIR(source->st_mode) && !S_ISDIR(target->st_mode))
        return ::renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
    const int code = exchange(fromFolder, from, toFolder, to);
    if (!code)
        removeTree(fromFolder, from);
    if (!isUnknownFlag(code))
        return code;
    if (const int failed = removeTree(toFolder, to))
        return failed;
    return renameNoReplace(fromFolder, from, toFolder, to);
}

} // namespace lumbra::files
