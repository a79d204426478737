// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPicture.h"

#include "VideoDecoder.h"

namespace lumbra::reader {

namespace {

constexpr double goal = 0.1;     // of the duration
constexpr double leeway = 0.3;   // a key frame up to here is as good, and much cheaper
constexpr double interval = 0.2; // seconds between two pictures that are looked at

// Millions of pixels that may be decoded on the way from a key frame to the goal: a quarter of a second of a large film
// or some seconds of a small one. Beyond that, the key frame before the goal has to do.
constexpr double work = 16;

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

// The time of the first picture to look at, for a decoder that stands at the last key frame before the goal. May move
// it to the next one.
double startFor(VideoDecoder& decoder, double wanted, double duration) {
    const double next = decoder.keyFrameFrom(wanted);
    if (next >= wanted && next <= duration * leeway && decoder.seek(next))
        return next;
    const double before = std::max(0.0, decoder.keyFrameBefore(wanted));
    return (wanted - before) * decoder.workPerSecond() <= work ? wanted : before;
}

} // namespace

QImage filmPicture(OpenedFile& file, QSize box, std::chrono::milliseconds limit) {
    // The rest of the time is for the picture itself.
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limit / 2);
    const std::unique_ptr<VideoDecoder> decoder = media ? VideoDecoder::open(*media) : nullptr;
    if (!decoder)
        return {};

    const double wanted = media->duration() * goal;
    const double time = decoder->seek(wanted) ? startFor(*decoder, wanted, media->duration()) : 0;
    QImage first;
    for (double next = time; decoder->advance(next); next = std::max({next, wanted, decoder->time()}) + interval) {
        QImage image = decoder->picture(box);
        if (!image.isNull() && !isNearBlack(image))
            return image;
        if (first.isNull())
            first = image;
    }
    if (first.isNull() && decoder->seek(0) && decoder->advance(0))
        return decoder->picture(box); // it ends before its tenth: a film of one picture
    return first;                     // a film of nothing but black
}

} // namespace lumbra::reader
