// SPDX-License-Identifier: GPL-3.0-or-later
#include "Ring.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumbra {

namespace {

// Points around the ring that nothing is painted on, so that one that stands askew has soft edges all the same.
constexpr double margin = 1;

} // namespace

Ring::Ring(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void Ring::setPart(qreal part) {
    part = std::isfinite(part) ? std::clamp(part, 0.0, 1.0) : 0;
    if (std::exchange(m_part, part) == part)
        return;
    repaint();
    Q_EMIT partChanged();
}

void Ring::setStroke(qreal stroke) {
    if (std::exchange(m_stroke, stroke) == stroke)
        return;
    repaint();
    Q_EMIT strokeChanged();
}

void Ring::setColor(const QColor& color) {
    if (std::exchange(m_color, color) == color)
        return;
    repaint();
    Q_EMIT colorChanged();
}

void Ring::setTrack(const QColor& track) {
    if (std::exchange(m_track, track) == track)
        return;
    repaint();
    Q_EMIT trackChanged();
}

void Ring::repaint() {
    m_stale = true;
    update();
}

void Ring::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        repaint();
    QQuickItem::itemChange(change, data);
}

void Ring::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        repaint();
}

QImage Ring::painted(double scale) const {
    const QSizeF whole = size() + QSizeF(2 * margin, 2 * margin);
    QImage image((whole * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(image.width() / whole.width(), image.height() / whole.height());
    const double side = std::min(width(), height()) - m_stroke;
    QRectF circle(0, 0, side, side);
    circle.moveCenter(QPointF(whole.width() / 2, whole.height() / 2));
    constexpr int turn = 360 * 16; // in the painter's units, counter-clockwise from the right
    painter.setPen(QPen(m_track, m_stroke));
    painter.drawEllipse(circle);
    if (m_part > 0) {
        painter.setPen(QPen(m_color, m_stroke, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(circle, turn / 4, -int(std::lround(m_part * turn)));
    }
    return image;
}

QSGNode* Ring::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(old);
    if (std::min(width(), height()) <= m_stroke) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_stale = true;
    }
    if (std::exchange(m_stale, false)) {
        constexpr QQuickWindow::CreateTextureOptions options(QQuickWindow::TextureCanUseAtlas
                                                             | QQuickWindow::TextureHasAlphaChannel);
        node->setTexture(window()->createTextureFromImage(painted(window()->effectiveDevicePixelRatio()), options));
        node->setRect(boundingRect().adjusted(-margin, -margin, margin, margin));
    }
    return node;
}

} // namespace lumbra
