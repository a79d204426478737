// Where the pages of a document stand in the view that scrolls them: one below the other, each as wide as the view lets
// it be, all enlarged alike. A pure value; lengths are points of the screen.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <utility>

namespace lumbra {

class PageLayout {
public:
    static constexpr double margin = 16; // around the pages
    static constexpr double gap = 12;    // between them
    static constexpr double leastZoom = 0.25;
    static constexpr double mostZoom = 8;

    // A place on a page that stays under the eye while the layout changes: parts of its sides from its upper left.
    struct Spot {
        int page = 0;
        QPointF part;
    };

    PageLayout() = default;

    // `sizes` as the document tells them, in points of print. At zoom 1 a page fits the width, but is no more than a
    // quarter larger than on paper.
    PageLayout(const QList<QSizeF>& sizes, double width, double zoom);

    int count() const { return int(m_places.size()); }

    // As wide as the view, or wider; all pages with the margins.
    QSizeF extent() const { return m_extent; }

    QRectF placeOf(int page) const { return m_places.value(page); }

    // The first and the last page that touch the span; the first is behind the last when none does.
    std::pair<int, int> pagesBetween(double top, double bottom) const;

    // The spot at a point, of the nearest page, and the point of a spot. Without pages the point is the origin.
    Spot spotAt(QPointF point) const;
    QPointF pointOf(const Spot& spot) const;

private:
    QList<QRectF> m_places; // in order from the top
    QSizeF m_extent;
};

} // namespace lumbra
