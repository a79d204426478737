// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextHead.h"

#include "platform/Descriptor.h"
#include "platform/TextDecoding.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumbra {

namespace {

// A pipe or a device may never end, or never begin; `O_NONBLOCK` keeps its opening from waiting.
constexpr int forReading = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

std::optional<QByteArray> readUpTo(int file, qint64 limit) {
    QByteArray bytes(limit, Qt::Uninitialized);
    qint64 size = 0;
    while (size < limit) {
        const ssize_t got = ::read(file, bytes.data() + size, size_t(limit - size));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        size += got;
    }
    bytes.truncate(size);
    return bytes;
}

} // namespace

std::optional<TextHead> TextHead::read(const Location& file, qint64 limit) {
    const Descriptor opened(::open(file.path().constData(), forReading));
    struct stat status;
    if (!opened || ::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const qint64 size = status.st_size;
    const std::optional<QByteArray> bytes = readUpTo(opened.number(), std::min(size, limit));
    if (!bytes)
        return std::nullopt;
    TextHead head{.text = decodedText(*bytes), .size = size, .isWhole = bytes->size() >= size};
    if (const qsizetype end = head.text.lastIndexOf(u'\n'); !head.isWhole && end >= 0)
        head.text.truncate(end + 1);
    return head;
}

} // namespace lumbra
