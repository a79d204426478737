// Pictures of pixels by Qt's readers, which were the quickest for JPEG, PNG, GIF and TIFF; what they can't do well,
// such as inks, odd profiles and very large pictures, goes to libvips.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "JpegHeader.h"
#include "Makers.h"
#include "VipsPictures.h"

#include <QBuffer>
#include <QColorSpace>
#include <QColorTransform>
#include <QImageReader>

#include <algorithm>
#include <iterator>

namespace lumbra::reader {

namespace {

constexpr qint64 bytesInMemory = 64 * 1024 * 1024;
constexpr int allocationLimit = 600; // MiB: `pixelsInMemory` at 8 bytes a pixel, and a little

bool isTurned(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

// True where a conversion would hardly be seen. Many PNG files say in numbers what comes to the screen's own colours,
// but for its darkest tones; to take them at their word would lighten or darken those.
bool isAsGoodAsScreen(const QColorSpace& colours, const QColorSpace& screen) {
    constexpr QRgb samples[] = {0xff804040, 0xff408040, 0xff404080, 0xffc8c8c8, 0xffff8000, 0xff00ff80};
    constexpr int tolerance = 3;
    const QColorTransform transform = colours.transformationToColorSpace(screen);
    return std::all_of(std::begin(samples), std::end(samples), [&transform](QRgb sample) {
        const QRgb mapped = transform.map(sample);
        return std::abs(qRed(mapped) - qRed(sample)) <= tolerance
               && std::abs(qGreen(mapped) - qGreen(sample)) <= tolerance
               && std::abs(qBlue(mapped) - qBlue(sample)) <= tolerance;
    });
}

QImage inScreenColours(QImage image) {
    const QColorSpace screen(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != screen && !isAsGoodAsScreen(image.colorSpace(), screen))
        image.convertToColorSpace(screen);
    return image;
}

QImage readScaled(QImageReader& reader, QSize box) {
    reader.setAutoTransform(true);
    // The reader scales before it turns.
    const QSize size = fittedWithoutEnlarging(reader.size(), isTurned(reader) ? box.transposed() : box);
    // Qt's scaling while it reads is for JPEG and WebP a decoder's own, but for PNG slower than to scale afterwards.
    if (reader.format() != "png") {
        reader.setScaledSize(size);
        return inScreenColours(reader.read());
    }
    const QImage whole = reader.read();
    return whole.isNull() ? whole
                          : inScreenColours(whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

QImage jpegPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    const JpegHeader header = JpegHeader::read(file.device());
    if (header.components == 4)
        return vipsPicture(file, box, limit);
    // From memory the decoder reads without a copy.
    QBuffer bytes;
    if (file.size() <= bytesInMemory) {
        bytes.setData(file.bytes(bytesInMemory));
        bytes.open(QIODevice::ReadOnly);
    }
    QImageReader reader(bytes.isOpen() ? static_cast<QIODevice*>(&bytes) : &file.device(), "jpeg");
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

QImage rasterPicture(const QByteArray& bytes, QSize box) {
    QImageReader::setAllocationLimit(allocationLimit);
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    QImageReader reader(&device);
    const QSize size = reader.size();
    if (reader.format() == "svg" || size.isEmpty() || qint64(size.width()) * size.height() > pixelsInMemory)
        return {};
    return readScaled(reader, box);
}

QImage modernPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    return vipsPicture(file, box, limit);
}

} // namespace lumbra::reader
