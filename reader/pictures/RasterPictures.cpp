// Pictures of pixels by Qt's readers, which were the quickest for PNG, GIF and TIFF; very large ones go to libvips.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "ScreenColours.h"
#include "VipsPictures.h"

#include <QBuffer>
#include <QImageReader>

namespace lumbra::reader {

namespace {

constexpr int allocationLimit = 600; // MiB: `pixelsInMemory` at 8 bytes a pixel, and a little

bool isTurned(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

QImage readScaled(QImageReader& reader, QSize box) {
    reader.setAutoTransform(true);
    // The reader scales before it turns.
    const QSize size = fittedWithoutEnlarging(reader.size(), isTurned(reader) ? box.transposed() : box);
    // Qt's scaling while it reads is for some formats a decoder's own, but for PNG slower than to scale afterwards.
    if (reader.format() != "png") {
        reader.setScaledSize(size);
        return inScreenColours(reader.read());
    }
    const QImage whole = reader.read();
    return whole.isNull() ? whole
                          : inScreenColours(whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

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

QSize rasterPixels(OpenedFile& file) {
    QImageReader reader(&file.device(), file.extension());
    reader.setDecideFormatFromContent(true);
    return isTurned(reader) ? reader.size().transposed() : reader.size();
}

QImage modernPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    return vipsPicture(file, box, limit);
}

} // namespace lumbra::reader
