// Pictures of pixels by Qt's readers, which were the quickest for JPEG, PNG, GIF and TIFF; what they can't do well,
// such as inks, odd profiles and very large pictures, goes to libvips.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "JpegHeader.h"
#include "Makers.h"
#include "VipsPictures.h"

#include <QColorSpace>
#include <QImageReader>

namespace lumbra::reader {

namespace {

constexpr int allocationLimit = 600; // MiB: `pixelsInMemory` at 8 bytes a pixel, and a little

bool isTurned(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

QImage inScreenColours(QImage image) {
    const QColorSpace screen(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != screen)
        image.convertToColorSpace(screen);
    return image;
}

QImage readScaled(QImageReader& reader, QSize box) {
    const QSize size = reader.size();
    reader.setAutoTransform(true);
    // The reader scales before it turns.
    reader.setScaledSize(fittedWithoutEnlarging(size, isTurned(reader) ? box.transposed() : box));
    return inScreenColours(reader.read());
}

} // namespace

QImage jpegPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    const JpegHeader header = JpegHeader::read(file.device());
    if (header.components == 4)
        return vipsPicture(file, box, limit);
    QImageReader reader(&file.device(), "jpeg");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || std::max(size.width(), size.height()) > largestSide)
        return {};
    QImage image = readScaled(reader, box); // bounded by what the scaled reader unpacks
    // A profile that Qt can't read, such as one of tables.
    if (header.hasProfile && !image.isNull() && !image.colorSpace().isValid())
        return vipsPicture(file, box, limit);
    return image;
}

QImage rasterPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    QImageReader::setAllocationLimit(allocationLimit);
    QImageReader reader(&file.device(), file.extension());
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > pixelsInMemory)
        return vipsPicture(file, box, limit);
    return readScaled(reader, box);
}

QImage modernPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    return vipsPicture(file, box, limit);
}

} // namespace lumbra::reader
