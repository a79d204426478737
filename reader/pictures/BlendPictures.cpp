// Scenes of Blender: the small picture that it saves as the second block of the file, which may be packed as a whole.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"
#include "Unpacked.h"

#include <QtEndian>

namespace lumbra::reader {

namespace {

constexpr qint64 startLimit = 2 * 1024 * 1024; // bytes in which it lies
constexpr int blockLimit = 32;                 // blocks before it
constexpr qint64 sideLimit = 1024;

// How the file counts: by its header "BLENDER-v306" with the sizes of pointers and the order of bytes, or since the
// fifth version "BLENDER17-01v0500" with the header's own length.
struct Layout {
    qint64 header = 12;
    qint64 blockHeader = 0;
    qint64 lengthAt = 4;
    bool longLength = false;
    bool bigEndian = false;

    static Layout of(const QByteArray& bytes) {
        constexpr qint64 around = 16; // of a block, without its pointer
        if (bytes.mid(7, 2) == "17")
            return {.header = 17, .blockHeader = 32, .lengthAt = 16, .longLength = true};
        return {.blockHeader = around + (bytes.mid(7, 1) == "-" ? 8 : 4), .bigEndian = bytes.mid(8, 1) == "V"};
    }
};

qint64 number(const QByteArray& bytes, qint64 at, const Layout& layout, bool isLong = false) {
    const char* const place = bytes.constData() + at;
    if (isLong)
        return qFromLittleEndian<qint64>(place);
    return layout.bigEndian ? qFromBigEndian<qint32>(place) : qFromLittleEndian<qint32>(place);
}

QImage pictureAt(const QByteArray& bytes, qint64 at, const Layout& layout) {
    constexpr qint64 sizes = 8; // bytes
    if (at + sizes > bytes.size())
        return {};
    const qint64 width = number(bytes, at, layout), height = number(bytes, at + 4, layout);
    if (width <= 0 || height <= 0 || width > sideLimit || height > sideLimit
        || at + sizes + width * height * 4 > bytes.size())
        return {};
    return QImage(reinterpret_cast<const uchar*>(bytes.constData()) + at + sizes, int(width), int(height),
                  QImage::Format_RGBA8888)
        .mirrored(); // the last row comes first
}

QImage savedPicture(const QByteArray& bytes) {
    const Layout layout = Layout::of(bytes);
    qint64 at = layout.header;
    for (int block = 0; block < blockLimit && at + layout.blockHeader <= bytes.size(); ++block) {
        const qint64 length = number(bytes, at + layout.lengthAt, layout, layout.longLength);
        if (length < 0 || length > startLimit)
            break;
        if (bytes.mid(at, 4) == "TEST")
            return pictureAt(bytes, at + layout.blockHeader, layout);
        at += layout.blockHeader + length;
    }
    return {};
}

} // namespace

QImage blendPicture(OpenedFile& file, QSize box, Milliseconds) {
    QByteArray bytes = file.bytes(startLimit);
    if (!bytes.startsWith("BLENDER"))
        bytes = unpacked(bytes, startLimit);
    const QImage image = bytes.startsWith("BLENDER") ? savedPicture(bytes) : QImage();
    return image.isNull() ? image
                          : image.scaled(fittedWithoutEnlarging(image.size(), box), Qt::IgnoreAspectRatio,
                                         Qt::SmoothTransformation);
}

} // namespace lumbra::reader
