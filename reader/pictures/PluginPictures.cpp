// Pictures by the decoders that stand in plugins.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "VipsPictures.h"
#include "reader/Plugins.h"

namespace lumbra::reader {

QImage vipsPicture(OpenedFile& file, QSize box, Milliseconds) {
    VipsDecoder* const decoder = VipsDecoder::shared();
    return decoder ? decoder->picture(file, box) : QImage();
}

QImage vipsPicture(const QByteArray& bytes, QSize box) {
    VipsDecoder* const decoder = VipsDecoder::shared();
    return decoder ? decoder->picture(bytes, box) : QImage();
}

QSize vipsPixels(OpenedFile& file) {
    VipsDecoder* const decoder = VipsDecoder::shared();
    return decoder ? decoder->pixels(file) : QSize();
}

QImage videoPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    FilmDecoder* const decoder = FilmDecoder::shared();
    return decoder ? decoder->filmPicture(file, box, limit) : QImage();
}

QImage codecPicture(OpenedFile& file, QSize box, Milliseconds) {
    FilmDecoder* const decoder = FilmDecoder::shared();
    return decoder ? decoder->framePicture(file, box) : QImage();
}

// Music: its cover, which containers hold as a picture of its own.
QImage coverPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    FilmDecoder* const decoder = FilmDecoder::shared();
    return decoder ? embeddedPicture(decoder->cover(file, limit / 2), box) : QImage();
}

} // namespace lumbra::reader
