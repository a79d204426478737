// SPDX-License-Identifier: GPL-3.0-or-later
#include "PdfText.h"

#include <QPdfDocument>
#include <QPdfSelection>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace lumbra::reader {

namespace {

// The next piece of a line begins where the one before ends, or a blank further.
bool goesOn(const QRectF& line, const QRectF& piece) {
    const double widestBlank = line.height();
    const double shared = std::min(line.bottom(), piece.bottom()) - std::max(line.top(), piece.top());
    return shared > std::min(line.height(), piece.height()) / 2 && piece.left() >= line.left() - widestBlank
           && piece.left() <= line.right() + widestBlank;
}

// Many a document places each letter by itself.
QList<QRectF> placesOf(const QPdfSelection& selection) {
    QList<QRectF> places;
    const QList<QPolygonF> bounds = selection.bounds();
    for (const QPolygonF& bound : bounds) {
        const QRectF place = bound.boundingRect();
        if (place.isEmpty())
            continue;
        if (!places.isEmpty() && goesOn(places.last(), place))
            places.last() |= place;
        else
            places.append(place);
    }
    return places;
}

PdfText textOf(const QPdfSelection& selection) {
    return selection.isValid() ? PdfText{selection.text(), placesOf(selection)} : PdfText{};
}

double distance(double value, double least, double most) {
    return std::max({0.0, least - value, value - most});
}

// A point on a line, as near as can be: the library finds a character only where there is one.
QPointF onALine(const QList<QRectF>& lines, QPointF point) {
    const auto byTop = [](const QRectF& a, const QRectF& b) { return a.top() < b.top(); };
    const auto byBottom = [](const QRectF& a, const QRectF& b) { return a.bottom() < b.bottom(); };
    if (point.y() < std::ranges::min_element(lines, byTop)->top())
        return {lines.first().left(), lines.first().center().y()};
    if (point.y() > std::ranges::max_element(lines, byBottom)->bottom())
        return {lines.last().right(), lines.last().center().y()};
    const auto farness = [point](const QRectF& line) {
        return std::pair(distance(point.y(), line.top(), line.bottom()),
                         distance(point.x(), line.left(), line.right()));
    };
    const QRectF line =
        *std::ranges::min_element(lines, [farness](const auto& a, const auto& b) { return farness(a) < farness(b); });
    return {std::clamp(point.x(), line.left(), line.right()), line.center().y()};
}

// The character at a point of a line, counted from the page's first.
int characterAt(QPdfDocument& document, int page, const QList<QRectF>& lines, QPointF point) {
    const QPointF beginning(lines.first().left(), lines.first().center().y());
    const QPdfSelection before = document.getSelection(page, beginning, point);
    return before.isValid() ? std::max(before.startIndex(), before.endIndex()) : 0;
}

// From the beginning of the word at the first character to the end of the word at the last.
std::pair<int, int> wordsAround(const QString& text, int first, int last) {
    const auto size = int(text.size());
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::clamp(first, 0, std::max(0, size - 1)));
    const qsizetype begin = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
    finder.setPosition(std::clamp(last, 0, std::max(0, size - 1)));
    const qsizetype end = finder.toNextBoundary();
    return {int(std::max(qsizetype(0), begin)), end < 0 ? size : int(end)};
}

} // namespace

PdfText pdfText(QPdfDocument& document, int page) {
    return textOf(document.getAllText(page));
}

PdfText pdfText(QPdfDocument& document, int page, QPointF from, QPointF to, bool byWords) {
    const PdfText all = pdfText(document, page);
    if (all.places.isEmpty())
        return {};
    const QPointF a = onALine(all.places, from), b = onALine(all.places, to);
    const auto [first, last] = std::minmax({characterAt(document, page, all.places, a), //
                                            characterAt(document, page, all.places, b)});
    if (!byWords)
        return first < last ? textOf(document.getSelectionAtIndex(page, first, last - first)) : PdfText{};
    const auto [begin, end] = wordsAround(all.words, first, last);
    return textOf(document.getSelectionAtIndex(page, begin, end - begin));
}

} // namespace lumbra::reader
