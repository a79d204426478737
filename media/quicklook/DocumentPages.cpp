// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentPages.h"

#include <algorithm>

namespace lumbra {

void DocumentPages::setPages(const Location& file, const QString& edition, const QList<QSizeF>& sizes) {
    if (m_file != file)
        m_zoom = 1;
    m_file = file;
    m_edition = edition;
    m_sizes = sizes;
    layOut();
    Q_EMIT contentChanged();
}

void DocumentPages::setWidth(double width) {
    if (m_width == width)
        return;
    m_width = width;
    layOut();
}

void DocumentPages::setZoom(double zoom) {
    const double bounded = std::clamp(zoom, PageLayout::leastZoom, PageLayout::mostZoom);
    if (m_zoom == bounded)
        return;
    m_zoom = bounded;
    layOut();
}

void DocumentPages::look(double top, double height) {
    m_top = top;
    m_height = height;
    follow();
}

QVariantMap DocumentPages::spotAt(QPointF point) const {
    const PageLayout::Spot spot = m_layout.spotAt(point);
    return {{QStringLiteral("page"), spot.page}, {QStringLiteral("part"), spot.part}};
}

QPointF DocumentPages::pointOf(const QVariantMap& spot) const {
    return m_layout.pointOf(spotFrom(spot));
}

PageLayout::Spot DocumentPages::spotFrom(const QVariantMap& spot) {
    return {spot.value(QStringLiteral("page")).toInt(), spot.value(QStringLiteral("part")).toPointF()};
}

void DocumentPages::layOut() {
    m_layout = PageLayout(m_sizes, m_width, m_zoom);
    // Rows that are gone must not be asked where they stand.
    if (m_last >= m_layout.count())
        setRange(m_first, m_layout.count() - 1);
    if (m_last >= m_first)
        Q_EMIT dataChanged(index(0), index(m_last - m_first), {place});
    Q_EMIT layoutChanged();
    follow();
}

void DocumentPages::follow() {
    if (m_layout.count() == 0) {
        setRange(0, -1);
    } else {
        const auto [first, last] = m_layout.pagesBetween(m_top - m_height, m_top + 2 * m_height);
        setRange(first, last);
    }
    const double middle = m_top + m_height / 2;
    const int current = std::min(m_layout.pagesBetween(middle, middle).first + 1, m_layout.count());
    if (std::exchange(m_currentPage, current) != current)
        Q_EMIT currentPageChanged();
}

// What stays is not drawn anew.
void DocumentPages::setRange(int first, int last) {
    if (last < first || m_last < m_first || first > m_last || last < m_first) {
        if (m_last >= m_first) {
            beginRemoveRows({}, 0, m_last - m_first);
            m_first = 0;
            m_last = -1;
            endRemoveRows();
        }
        if (last >= first) {
            beginInsertRows({}, 0, last - first);
            m_first = first;
            m_last = last;
            endInsertRows();
        }
        return;
    }
    if (last < m_last) {
        beginRemoveRows({}, last + 1 - m_first, m_last - m_first);
        m_last = last;
        endRemoveRows();
    }
    if (first > m_first) {
        beginRemoveRows({}, 0, first - m_first - 1);
        m_first = first;
        endRemoveRows();
    }
    if (first < m_first) {
        beginInsertRows({}, 0, m_first - first - 1);
        m_first = first;
        endInsertRows();
    }
    if (last > m_last) {
        beginInsertRows({}, m_last + 1 - m_first, last - m_first);
        m_last = last;
        endInsertRows();
    }
}

int DocumentPages::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_last - m_first + 1;
}

QVariant DocumentPages::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int at = m_first + index.row();
    switch (role) {
    case page:
        return at;
    case place:
        return m_layout.placeOf(at);
    default:
        return {};
    }
}

} // namespace lumbra
