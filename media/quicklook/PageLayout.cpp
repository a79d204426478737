// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageLayout.h"

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

// Points of the screen, of which there are 96 to the inch, for one of print, at zoom 1 where there is room.
constexpr double largestScale = 96.0 / 72.0 * 1.25;

} // namespace

PageLayout::PageLayout(const QList<QSizeF>& sizes, double width, double zoom) {
    if (sizes.isEmpty() || width <= 0)
        return;
    const double room = std::max(1.0, width - 2 * margin);
    double widest = 0;
    double top = margin;
    m_places.reserve(sizes.size());
    for (const QSizeF& size : sizes) {
        const double scale = std::min(largestScale, room / size.width()) * zoom;
        // On whole points, so that pages stay sharp.
        const QSizeF drawn(std::max(1.0, std::round(size.width() * scale)),
                           std::max(1.0, std::round(size.height() * scale)));
        m_places.append(QRectF(QPointF(0, top), drawn));
        widest = std::max(widest, drawn.width());
        top += drawn.height() + gap;
    }
    m_extent = QSizeF(std::max(width, widest + 2 * margin), top - gap + margin);
    for (QRectF& place : m_places)
        place.moveLeft(std::floor((m_extent.width() - place.width()) / 2));
}

std::pair<int, int> PageLayout::pagesBetween(double top, double bottom) const {
    const auto first = std::ranges::partition_point(m_places, [top](const QRectF& at) { return at.bottom() < top; });
    const auto behind =
        std::ranges::partition_point(m_places, [bottom](const QRectF& at) { return at.top() <= bottom; });
    return {int(first - m_places.begin()), int(behind - m_places.begin()) - 1};
}

PageLayout::Spot PageLayout::spotAt(QPointF point) const {
    if (m_places.isEmpty())
        return {};
    const int page = std::min(pagesBetween(point.y(), point.y()).first, count() - 1);
    const QRectF place = m_places[page];
    return {page, QPointF((point.x() - place.left()) / place.width(), (point.y() - place.top()) / place.height())};
}

QPointF PageLayout::pointOf(const Spot& spot) const {
    if (m_places.isEmpty())
        return {};
    const QRectF place = m_places[std::clamp(spot.page, 0, count() - 1)];
    return {place.left() + spot.part.x() * place.width(), place.top() + spot.part.y() * place.height()};
}

} // namespace lumbra
