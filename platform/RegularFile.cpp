// SPDX-License-Identifier: GPL-3.0-or-later
#include "RegularFile.h"

#include <cerrno>

namespace lumbra {

std::optional<RegularFile> RegularFile::open(const Location& location) {
    const char* const path = location.path().constData();
    struct stat facts;
    // Asked before, since to open a device may already move it; and again after, since it may be another one by then.
    if (::stat(path, &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    Descriptor descriptor(::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor || ::fstat(descriptor.number(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    return RegularFile(std::move(descriptor), facts);
}

std::optional<QByteArray> RegularFile::read(qint64 limit) const {
    QByteArray bytes(limit, Qt::Uninitialized); // what is not touched takes no memory
    qint64 filled = 0;
    while (filled < limit) {
        const ssize_t got = ::read(descriptor(), bytes.data() + filled, size_t(limit - filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    return bytes;
}

std::optional<QByteArray> RegularFile::bytes(const Location& location, qint64 largest) {
    const auto file = open(location);
    if (!file || file->size() > largest)
        return std::nullopt;
    auto bytes = file->read(largest + 1); // it may have grown
    return bytes && bytes->size() > largest ? std::nullopt : bytes;
}

} // namespace lumbra
