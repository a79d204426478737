// A page of a PDF, drawn on white paper.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

class QPdfDocument;

namespace lumbra::reader {

// The part of the page, whose whole would have so many pixels. Null when the page can't be drawn.
QImage pdfPage(QPdfDocument& document, int page, QSize whole, QRect part);

} // namespace lumbra::reader
