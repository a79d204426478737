// SPDX-License-Identifier: GPL-3.0-or-later
#include "ExtendedAttributes.h"

#include "Descriptor.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumbra::ExtendedAttributes {

namespace {

// The calls relative to a folder came with kernel 6.13, and the C library does not name them yet.
constexpr long getxattrat = 464;
constexpr long listxattrat = 465;

struct GetArguments {
    alignas(8) quint64 value;
    quint32 size;
    quint32 flags;
};

ssize_t getAt(int folder, const char* file, const char* name, std::span<char> buffer) {
    GetArguments arguments{quint64(quintptr(buffer.data())), quint32(buffer.size()), 0};
    return ::syscall(getxattrat, folder, file, AT_SYMLINK_NOFOLLOW, name, &arguments, sizeof arguments);
}

bool kernelTakesFolders() {
    // A sandbox that does not know a call may refuse it as forbidden rather than as unknown.
    static const bool takes = [] {
        char buffer[1];
        return getAt(AT_FDCWD, "/", "user.lumbra", buffer) >= 0 || (errno != ENOSYS && errno != EPERM);
    }();
    return takes;
}

// For older kernels. Opening costs some two thirds more than the call by a full path, but needs no path and no /proc.
Descriptor openEntry(int folder, const char* file) {
    return Descriptor(::openat(folder, file, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

} // namespace

std::optional<QByteArray> read(const Location& file, const AttributeName& name) {
    // The value may be replaced by a longer one between the two calls; then ask again, but not for ever.
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t length = ::getxattr(file.path().constData(), name.systemName(), nullptr, 0);
        if (length < 0)
            return std::nullopt;
        if (auto value = read(file, name, size_t(length)))
            return value;
    }
    return std::nullopt;
}

std::optional<QByteArray> read(const Location& file, const AttributeName& name, size_t limit) {
    // A byte to spare, since a buffer of no bytes would be a question for the size.
    QByteArray value(qsizetype(limit) + 1, Qt::Uninitialized);
    const ssize_t got = ::getxattr(file.path().constData(), name.systemName(), value.data(), limit + 1);
    if (got < 0 || size_t(got) > limit)
        return std::nullopt;
    value.truncate(got);
    return value;
}

std::optional<std::string_view> readAt(int folder, const char* file, const AttributeName& name,
                                       std::span<char> buffer) {
    ssize_t got = -1;
    if (kernelTakesFolders()) {
        got = getAt(folder, file, name.systemName(), buffer);
    } else if (const Descriptor entry = openEntry(folder, file)) {
        got = ::fgetxattr(entry.number(), name.systemName(), buffer.data(), buffer.size());
    }
    if (got < 0 || size_t(got) > buffer.size())
        return std::nullopt;
    return std::string_view(buffer.data(), size_t(got));
}

std::optional<NamesAt> NamesAt::of(int folder, const char* file) {
    NamesAt names;
    ssize_t got = -1;
    if (kernelTakesFolders()) {
        got = ::syscall(listxattrat, folder, file, AT_SYMLINK_NOFOLLOW, names.m_names.data(), names.m_names.size());
    } else if (const Descriptor entry = openEntry(folder, file)) {
        got = ::flistxattr(entry.number(), names.m_names.data(), names.m_names.size());
    } else {
        got = 0;
    }
    if (got < 0) {
        if (errno == ERANGE)
            return std::nullopt;
        got = 0;
    }
    names.m_length = size_t(got);
    return names;
}

bool NamesAt::holds(const AttributeName& name) const {
    // Each name ends in a NUL, and so does what is searched for; only a match at the start of a name counts.
    const std::string_view all(m_names.data(), m_length);
    const std::string_view wanted(name.systemName(), name.systemView().size() + 1);
    for (size_t at = all.find(wanted); at != std::string_view::npos; at = all.find(wanted, at + 1)) {
        if (at == 0 || all[at - 1] == '\0')
            return true;
    }
    return false;
}

bool write(const Location& file, const AttributeName& name, QByteArrayView value) {
    return ::setxattr(file.path().constData(), name.systemName(), value.data(), size_t(value.size()), 0) == 0;
}

Removal remove(const Location& file, const AttributeName& name) {
    if (::removexattr(file.path().constData(), name.systemName()) == 0)
        return Removal::removed;
    return errno == ENODATA ? Removal::wasAbsent : Removal::failed;
}

QList<QByteArray> systemNames(const Location& file) {
    QByteArray all;
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t length = ::listxattr(file.path().constData(), nullptr, 0);
        if (length <= 0)
            return {};
        all.resize(length);
        const ssize_t got = ::listxattr(file.path().constData(), all.data(), size_t(length));
        if (got < 0 && errno == ERANGE)
            continue;
        all.truncate(std::max<ssize_t>(got, 0));
        break;
    }
    QList<QByteArray> names;
    for (const QByteArray& name : all.split('\0')) {
        if (name.startsWith("user."))
            names.append(name);
    }
    return names;
}

} // namespace lumbra::ExtendedAttributes
