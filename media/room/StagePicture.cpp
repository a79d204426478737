// SPDX-License-Identifier: GPL-3.0-or-later
#include "StagePicture.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace lumbra {

StagePicture::StagePicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void StagePicture::setImage(const QImage& image) {
    if (m_image.cacheKey() == image.cacheKey())
        return;
    m_image = image;
    Q_EMIT imageChanged();
    update();
}

void StagePicture::setPoster(const QImage& poster) {
    if (m_poster.cacheKey() == poster.cacheKey())
        return;
    m_poster = poster;
    Q_EMIT posterChanged();
    update();
}

void StagePicture::setEnlarges(bool enlarges) {
    if (m_enlarges == enlarges)
        return;
    m_enlarges = enlarges;
    Q_EMIT enlargesChanged();
    update();
}

QRectF StagePicture::place(const QSizeF& frame, const QSize& picture, double scale, bool enlarges) {
    if (frame.isEmpty() || picture.isEmpty() || scale <= 0)
        return {};
    const QSizeF own = QSizeF(picture) / scale;
    QSizeF size = own.scaled(frame, Qt::KeepAspectRatio);
    if (!enlarges && size.width() > picture.width())
        size = picture;
    else if (std::abs(size.width() - own.width()) * scale < 2 && std::abs(size.height() - own.height()) * scale < 2)
        size = own;
    const auto whole = [scale](double points) { return std::round(points * scale) / scale; };
    return {QPointF(whole((frame.width() - size.width()) / 2), whole((frame.height() - size.height()) / 2)), size};
}

void StagePicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void StagePicture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

QSGNode* StagePicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* picture = static_cast<QSGImageNode*>(node);
    const QRectF rect = place(size(), shown().size(), window()->effectiveDevicePixelRatio(), m_enlarges);
    if (rect.isEmpty()) {
        delete picture;
        m_drawn = 0;
        return nullptr;
    }
    if (!picture) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
        picture->setFiltering(QSGTexture::Linear);
        m_drawn = 0;
    }
    if (std::exchange(m_drawn, shown().cacheKey()) != shown().cacheKey())
        picture->setTexture(window()->createTextureFromImage(shown()));
    picture->setRect(rect);
    return picture;
}

} // namespace lumbra
