// SPDX-License-Identifier: GPL-3.0-or-later
#include "Track.h"

#include "ScrubGeometry.h"

#include <QPainter>
#include <QPainterPath>

namespace lumbra {

namespace {

// The middle of a picture in the proportions of the place that it is to fill.
QRect coverOf(const QSize& picture, const QSizeF& place) {
    QRect part(QPoint(), place.scaled(picture, Qt::KeepAspectRatio).toSize().expandedTo({1, 1}));
    part.moveCenter(QRect(QPoint(), picture).center());
    return part;
}

} // namespace

Track::Track(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &Track::lookChanged, this, [this] { update(); });
}

void Track::setScrubber(Scrubber* scrubber) {
    if (m_scrubber == scrubber)
        return;
    if (m_scrubber)
        m_scrubber->disconnect(this);
    m_scrubber = scrubber;
    if (scrubber)
        connect(scrubber, &Scrubber::trackChanged, this, [this] { update(); });
    Q_EMIT scrubberChanged();
    update();
}

// While the main thread waits: it may look at the scrubber.
void Track::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->fillRect(boundingRect(), m_bed);
    if (m_scrubber) {
        paintFrames(painter);
        paintBars(painter);
    }
    // Clips have no soft edge, so the corners are taken away at the end.
    QPainterPath corners;
    corners.addRect(boundingRect());
    corners.addRoundedRect(boundingRect(), m_radius, m_radius);
    painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter->fillPath(corners, Qt::black);
}

void Track::paintFrames(QPainter* painter) const {
    const QList<QImage>& strip = m_scrubber->strip();
    const QTransform toPixels = painter->deviceTransform();
    for (qsizetype i = 0; i < strip.size(); ++i) {
        // Whole pixels, so that no seam shows between two frames; scaled here, since a painter would leave most of the
        // frame's pixels out.
        const QRect place = toPixels.mapRect(ScrubGeometry::frameSlot(i, strip.size(), boundingRect().size())).toRect();
        if (place.isEmpty() || strip[i].isNull())
            continue;
        const QImage frame = strip[i]
                                 .copy(coverOf(strip[i].size(), place.size()))
                                 .scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter->save();
        painter->resetTransform();
        painter->drawImage(place.topLeft(), frame);
        painter->restore();
    }
}

void Track::paintBars(QPainter* painter) const {
    const QList<float>& bars = m_scrubber->bars();
    painter->setBrush(m_barColor);
    for (qsizetype i = 0; i < bars.size(); ++i) {
        const QRectF bar = ScrubGeometry::bar(i, bars.size(), bars[i], boundingRect().size());
        painter->drawRoundedRect(bar, bar.width() / 2, bar.width() / 2);
    }
}

} // namespace lumbra
