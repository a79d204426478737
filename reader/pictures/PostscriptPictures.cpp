// Encapsulated PostScript: the preview beside the program. The program itself is never run.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"

#include <QtEndian>

namespace lumbra::reader {

namespace {

constexpr qint64 textLimit = 4 * 1024 * 1024; // bytes in which a preview of digits lies
constexpr int sideLimit = 4096;

// A header of 30 bytes says where the parts are.
QImage tiffPreview(OpenedFile& file, QSize box) {
    constexpr qsizetype offsetAt = 20, lengthAt = 24, headerSize = 30;
    if (file.head().size() < headerSize)
        return {};
    const qint64 offset = qFromLittleEndian<quint32>(file.head().constData() + offsetAt);
    const qint64 length = qFromLittleEndian<quint32>(file.head().constData() + lengthAt);
    if (offset == 0 || length == 0 || length > previewLimit)
        return {};
    QFile& device = file.device();
    return device.seek(offset) ? embeddedPicture(device.read(length), box) : QImage();
}

// "%%BeginPreview: width height depth lines", then as many comments of hexadecimal digits; 0 is white.
QImage digitsPreview(const QByteArray& text) {
    static constexpr QByteArrayView mark("%%BeginPreview:");
    const qsizetype found = text.indexOf(mark);
    const qsizetype lineEnd = found < 0 ? -1 : text.indexOf('\n', found);
    if (lineEnd < 0)
        return {};
    const QList<QByteArray> facts =
        text.mid(found + mark.size(), lineEnd - found - mark.size()).simplified().split(' ');
    if (facts.size() < 3)
        return {};
    const int width = facts[0].toInt(), height = facts[1].toInt(), depth = facts[2].toInt();
    if (width <= 0 || height <= 0 || width > sideLimit || height > sideLimit
        || (depth != 1 && depth != 2 && depth != 4 && depth != 8))
        return {};
    const qsizetype rowSize = (qsizetype(width) * depth + 7) / 8;
    const qsizetype end = text.indexOf("%%EndPreview", lineEnd);
    const QByteArray samples = QByteArray::fromHex(text.mid(lineEnd, end < 0 ? -1 : end - lineEnd));
    if (samples.size() < rowSize * height)
        return {};
    QImage image(width, height, QImage::Format_Grayscale8);
    const int most = (1 << depth) - 1;
    for (int y = 0; y < height; ++y) {
        uchar* const row = image.scanLine(y);
        for (int x = 0; x < width; ++x) {
            const int bit = x * depth;
            const int sample = uchar(samples[y * rowSize + bit / 8]) >> (8 - depth - bit % 8) & most;
            row[x] = uchar(255 - sample * 255 / most);
        }
    }
    return image;
}

} // namespace

QImage postscriptPicture(OpenedFile& file, QSize box, Milliseconds) {
    if (!file.head().startsWith('%'))
        return tiffPreview(file, box);
    const QImage image = digitsPreview(file.bytes(textLimit));
    return image.isNull() ? image
                          : image.scaled(fittedWithoutEnlarging(image.size(), box), Qt::IgnoreAspectRatio,
                                         Qt::SmoothTransformation);
}

} // namespace lumbra::reader
