// SPDX-License-Identifier: GPL-3.0-or-later
#include "FramePicture.h"

#include "ComposedPicture.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace lumbra {

FramePicture::FramePicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void FramePicture::setImage(const QImage& image) {
    if (m_image.cacheKey() == image.cacheKey())
        return;
    m_image = image;
    Q_EMIT imageChanged();
    update();
}

void FramePicture::setCornerRadius(double radius) {
    if (m_cornerRadius == radius)
        return;
    m_cornerRadius = radius;
    Q_EMIT cornerRadiusChanged();
    update();
}

void FramePicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

QSGNode* FramePicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* picture = static_cast<QSGImageNode*>(node);
    if (m_image.isNull() || boundingRect().isEmpty()) {
        delete picture;
        return nullptr;
    }
    if (!picture) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
    }
    picture->setTexture(window()->createTextureFromImage(
        composedPicture(m_image, {}, size(), m_cornerRadius, window()->effectiveDevicePixelRatio())));
    picture->setRect(boundingRect());
    return picture;
}

} // namespace lumbra
