// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkimPicture.h"

#include "media/ComposedPicture.h"
#include "media/RoundedPicture.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>

namespace lumbra {

SkimPicture::SkimPicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void SkimPicture::setImage(const QImage& image) {
    if (m_image.cacheKey() == image.cacheKey())
        return;
    m_image = image;
    m_isDirty = true;
    Q_EMIT imageChanged();
    update();
}

void SkimPicture::setCornerRadius(double radius) {
    if (m_cornerRadius == radius)
        return;
    m_cornerRadius = radius;
    Q_EMIT cornerRadiusChanged();
    update();
}

void SkimPicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

QSGNode* SkimPicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (m_image.isNull() || boundingRect().isEmpty()) {
        delete node;
        return nullptr;
    }
    // Without a graphics processor there are no shaders.
    if (window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        auto* plain = node ? static_cast<QSGImageNode*>(node) : window()->createImageNode();
        plain->setOwnsTexture(true);
        plain->setTexture(window()->createTextureFromImage(
            composedPicture(m_image, {}, size(), m_cornerRadius, window()->effectiveDevicePixelRatio())));
        plain->setRect(boundingRect());
        return plain;
    }
    auto* picture = static_cast<RoundedPicture*>(node);
    if (!picture)
        picture = new RoundedPicture;
    if (std::exchange(m_isDirty, false) || !node)
        picture->setTexture(std::unique_ptr<QSGTexture>(window()->createTextureFromImage(m_image)));
    picture->setPlace(fittedInto(size(), m_image.size()), size(), m_cornerRadius);
    return picture;
}

} // namespace lumbra
