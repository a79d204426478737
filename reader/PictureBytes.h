// How a picture lies in the arena: its rows one after the other without gaps.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/reader/Protocol.h"

#include <QImage>

#include <cstring>
#include <span>

namespace lumbra::reader::PictureBytes {

// Of a picture in Format_RGB32 or Format_ARGB32_Premultiplied.
inline PictureFacts facts(const QImage& picture) {
    return {picture.size(), picture.format() == QImage::Format_RGB32};
}

// The bytes written; 0 if there is not room enough.
inline size_t write(const QImage& picture, std::span<uchar> to) {
    const auto row = size_t(picture.width()) * 4, bytes = row * size_t(picture.height());
    if (bytes > to.size())
        return 0;
    for (int y = 0; y < picture.height(); ++y)
        std::memcpy(to.data() + size_t(y) * row, picture.constScanLine(y), row);
    return bytes;
}

} // namespace lumbra::reader::PictureBytes
