// Videos: the first picture that is not near black after a tenth of the film.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"
#include "reader/media/VideoDecoder.h"

namespace lumbra::reader {

namespace {

constexpr double goal = 0.1;     // of the duration
constexpr double leeway = 0.3;   // a key frame up to here is as good, and much cheaper
constexpr double interval = 0.2; // seconds between two pictures that are looked at

// All but 2% of the picture darker than an eighth: a fade, not a night.
bool isNearBlack(const QImage& image) {
    constexpr int dark = 32;
    int bright = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            bright += qGray(row[x]) >= dark;
    }
    return bright * 50 < image.width() * image.height();
}

} // namespace

QImage videoPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    // The rest of the time is for the picture itself.
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limit / 2);
    const std::unique_ptr<VideoDecoder> decoder = media ? VideoDecoder::open(*media) : nullptr;
    if (!decoder)
        return {};

    double time = media->duration() * goal;
    if (time > 0) {
        const bool found = decoder->seek(time); // now the index is read, where it is not at the front
        const double keyFrame = decoder->keyFrameFrom(time);
        if (keyFrame >= time && keyFrame <= media->duration() * leeway && decoder->seek(keyFrame))
            time = keyFrame;
        else if (!found)
            time = 0;
    }

    QImage first;
    while (decoder->advance(time)) {
        QImage image = decoder->picture(box);
        if (!image.isNull() && !isNearBlack(image))
            return image;
        if (first.isNull())
            first = image;
        time = std::max(time, decoder->time()) + interval;
    }
    if (first.isNull() && decoder->seek(0) && decoder->advance(0))
        return decoder->picture(box); // it ends before its tenth: a film of one picture
    return first;                     // a film of nothing but black
}

} // namespace lumbra::reader
