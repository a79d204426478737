// Photographs in JPEG. Those in inks are libvips' business.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "JpegDecoder.h"
#include "Makers.h"
#include "ScreenColours.h"

#include <QColorSpace>
#include <QTransform>

namespace lumbra::reader {

namespace {

constexpr qint64 fileLimit = 256 * 1024 * 1024; // bytes

enum Orientation { upright = 1, mirrored, upsideDown, flipped, transposed, lyingLeft, transversed, lyingRight };

bool isLying(int orientation) {
    return orientation >= transposed && orientation <= lyingRight;
}

QImage turned(const QImage& image, int orientation) {
    switch (orientation) {
    case mirrored:
        return image.mirrored(true, false);
    case upsideDown:
        return image.mirrored(true, true);
    case flipped:
        return image.mirrored(false, true);
    case transposed:
        return image.mirrored(true, false).transformed(QTransform().rotate(270));
    case lyingLeft:
        return image.transformed(QTransform().rotate(90));
    case transversed:
        return image.mirrored(true, false).transformed(QTransform().rotate(90));
    case lyingRight:
        return image.transformed(QTransform().rotate(270));
    default:
        return image;
    }
}

QImage picture(const QByteArray& bytes, QSize box, Milliseconds limit) {
    JpegDecoder decoder(bytes, limit);
    if (!decoder.readHeader() || decoder.isOfInks()
        || std::max(decoder.size().width(), decoder.size().height()) > largestSide)
        return {};
    const QByteArray profile = decoder.profile();
    const QColorSpace colours = profile.isEmpty() ? QColorSpace() : QColorSpace::fromIccProfile(profile);
    if (!profile.isEmpty() && !colours.isValid())
        return {}; // one of tables, which libvips understands
    const int orientation = decoder.orientation();
    const QSize size = fittedWithoutEnlarging(decoder.size(), isLying(orientation) ? box.transposed() : box);
    QImage image = decoder.decode(size);
    if (image.isNull())
        return image;
    image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image.setColorSpace(colours);
    return turned(inScreenColours(image), orientation);
}

} // namespace

QImage jpegPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    return file.size() > fileLimit ? QImage() : picture(file.bytes(fileLimit), box, limit);
}

QImage jpegPicture(const QByteArray& bytes, QSize box) {
    return picture(bytes, box, std::chrono::minutes(1)); // whoever asks has bounds of its own
}

} // namespace lumbra::reader
