// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextHead.h"

#include "platform/RegularFile.h"
#include "platform/TextDecoding.h"

#include <algorithm>

namespace lumbra {

std::optional<TextHead> TextHead::read(const Location& file, qint64 limit) {
    const auto opened = RegularFile::open(file);
    if (!opened)
        return std::nullopt;
    const qint64 size = opened->size();
    const std::optional<QByteArray> bytes = opened->read(std::min(size, limit));
    if (!bytes)
        return std::nullopt;
    TextHead head{.text = decodedText(*bytes), .size = size, .isWhole = bytes->size() >= size};
    if (const qsizetype end = head.text.lastIndexOf(u'\n'); !head.isWhole && end >= 0)
        head.text.truncate(end + 1);
    return head;
}

} // namespace lumbra
