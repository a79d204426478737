// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"

#include "JpegHeader.h"

#include <QBuffer>

namespace lumbra::reader {

namespace {

// Qt mistakes the colours of inks.
bool isOfInks(const QByteArray& bytes) {
    if (!bytes.startsWith("\xff\xd8"))
        return false;
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return JpegHeader::read(device).components == 4;
}

} // namespace

QImage embeddedPicture(const QByteArray& bytes, QSize box) {
    if (bytes.isEmpty() || bytes.size() > previewLimit)
        return {};
    if (bytes.startsWith("%PDF-"))
        return pagePicture(bytes, box);
    const QImage image = isOfInks(bytes) ? QImage() : rasterPicture(bytes, box);
    return image.isNull() ? vipsPicture(bytes, box) : image;
}

} // namespace lumbra::reader
