// SPDX-License-Identifier: GPL-3.0-or-later
#include "Attributes.h"

#include "Failure.h"

#include <linux/limits.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string_view>

namespace lumbra::files {

namespace {

// A value that is too long for a file system's inodes is refused with the same number as any value on a full disk.
bool isFull(int file, size_t wanted) {
    struct statvfs facts;
    if (::fstatvfs(file, &facts) != 0)
        return true;
    return facts.f_bavail * facts.f_frsize < wanted + facts.f_frsize;
}

} // namespace

AttributeCopy::AttributeCopy() : m_names(XATTR_LIST_MAX), m_value(XATTR_SIZE_MAX) {}

AttributeCopy::Result AttributeCopy::copy(int from, int to, const char* name) {
    const ssize_t listed = ::flistxattr(from, m_names.data(), m_names.size());
    if (listed < 0) {
        if (errno == EOPNOTSUPP)
            return Result::all; // it can't have any
        throw Failure(errno, name);
    }
    Result result = Result::all;
    std::string_view rest(m_names.data(), size_t(listed));
    while (!rest.empty()) {
        const std::string_view attribute = rest.substr(0, rest.find('\0')); // the list ends each name so
        rest.remove_prefix(attribute.size() + 1);
        if (!attribute.starts_with("user."))
            continue;
        const ssize_t length = ::fgetxattr(from, attribute.data(), m_value.data(), m_value.size());
        if (length < 0) {
            if (errno == ENODATA)
                continue; // removed meanwhile
            throw Failure(errno, name);
        }
        if (::fsetxattr(to, attribute.data(), m_value.data(), size_t(length), 0) == 0)
            continue;
        const int code = errno;
        if (code == EIO || code == EROFS || ((code == ENOSPC || code == EDQUOT) && isFull(to, size_t(length))))
            throw Failure(code, name);
        result = Result::some;
    }
    return result;
}

} // namespace lumbra::files
