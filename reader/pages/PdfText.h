// The words of a page of a PDF between two points, and where they stand.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>

class QPdfDocument;

namespace lumbra::reader {

// Lengths are points of print from the page's upper left corner.
struct PdfText {
    QString words;
    QList<QRectF> places; // of the lines, or parts of lines
};

// Everything on the page; empty for a page without words.
PdfText pdfText(QPdfDocument& document, int page);

// What stands between the characters nearest to two points, in the order of the page's own text, whichever of the
// points comes first. A point above all lines means the first character, one below all the last. `byWords`: the words
// at the ends are whole.
PdfText pdfText(QPdfDocument& document, int page, QPointF from, QPointF to, bool byWords);

} // namespace lumbra::reader
