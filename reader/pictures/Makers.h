// The makers of small pictures, one for each family of formats, as Pictures.h describes them; and what they share.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"

#include <QImage>
#include <QSize>

#include <chrono>

namespace lumbra::reader {

using Milliseconds = std::chrono::milliseconds;

// Pictures of pixels.
QImage jpegPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage webpPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage rasterPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage modernPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage codecPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage photoshopPicture(OpenedFile& file, QSize box, Milliseconds limit);

// How many pixels such a picture has, upright, with nothing but its header read; empty if that does not tell.
QSize rasterPixels(OpenedFile& file);
QSize vipsPixels(OpenedFile& file);
QSize photoshopPixels(OpenedFile& file);

// Drawings, pages, moving pictures.
QImage drawingPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage packedDrawingPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage pagePicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage videoPicture(OpenedFile& file, QSize box, Milliseconds limit);

// Pictures that lie in files of another kind: previews and covers.
QImage rawPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage postscriptPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage coverPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage archivePicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage officePicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage animationPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage blendPicture(OpenedFile& file, QSize box, Milliseconds limit);

// Texts, drawn as a page.
QImage plainTextPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage sourceTextPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage markdownPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage webPagePicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage tablePicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage subtitlesPicture(OpenedFile& file, QSize box, Milliseconds limit);
QImage richTextPicture(OpenedFile& file, QSize box, Milliseconds limit);

// The largest size with these proportions in the box: never above `size` itself, never below one pixel a side.
QSize fittedWithoutEnlarging(QSize size, QSize box);
QSize fitted(QSizeF size, QSize box);

// A header that claims more pixels a side is not believed, or its file is not worth the time.
inline constexpr int largestSide = 40000;

// Above this, a picture is not unpacked into memory as a whole.
inline constexpr qint64 pixelsInMemory = 64'000'000;

} // namespace lumbra::reader
