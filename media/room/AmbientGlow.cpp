// SPDX-License-Identifier: GPL-3.0-or-later
#include "AmbientGlow.h"

#include "Glow.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGOpacityNode>

#include <algorithm>
#include <array>

namespace lumbra {

namespace {

// Two canvases one over the other, the former under the new one.
struct Canvases : QSGNode {
    struct Layer {
        QSGOpacityNode* opacity = nullptr;
        QSGImageNode* image = nullptr;
    };

    void set(Layer& layer, const QImage& canvas, QQuickWindow* window) {
        if (layer.opacity) {
            removeChildNode(layer.opacity);
            delete layer.opacity;
            layer = {};
        }
        if (canvas.isNull())
            return;
        layer.image = window->createImageNode();
        layer.image->setOwnsTexture(true);
        layer.image->setFiltering(QSGTexture::Linear);
        layer.image->setTexture(window->createTextureFromImage(canvas));
        layer.opacity = new QSGOpacityNode;
        layer.opacity->appendChildNode(layer.image);
        &layer == &lower ? prependChildNode(layer.opacity) : appendChildNode(layer.opacity);
    }

    Layer lower, upper;
};

} // namespace

AmbientGlow::AmbientGlow(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void AmbientGlow::setPicture(const QImage& picture) {
    if (m_picture.cacheKey() == picture.cacheKey())
        return;
    m_picture = picture;
    Q_EMIT sourceChanged();
    follow();
}

void AmbientGlow::setSound(bool sound) {
    if (std::exchange(m_isSound, sound) == sound)
        return;
    Q_EMIT sourceChanged();
    follow();
}

void AmbientGlow::setAccent(const QColor& accent) {
    if (std::exchange(m_accent, accent) == accent)
        return;
    Q_EMIT sourceChanged();
    follow();
}

void AmbientGlow::setCentre(double centre) {
    if (std::exchange(m_centre, centre) == centre)
        return;
    Q_EMIT sourceChanged();
    follow();
}

void AmbientGlow::setProgress(double progress) {
    if (std::exchange(m_progress, progress) == progress)
        return;
    Q_EMIT progressChanged();
    update();
}

void AmbientGlow::componentComplete() {
    QQuickItem::componentComplete();
    follow();
}

void AmbientGlow::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void AmbientGlow::follow() {
    if (!isComponentComplete())
        return;
    const QImage next = m_isSound ? Glow::ofSound(m_accent, m_centre) : Glow::ofPicture(m_picture);
    if (next == m_to)
        return;
    m_from = Glow::between(m_from, m_to, m_progress);
    m_to = next;
    m_isDirty = true;
    update();
    Q_EMIT changed();
}

QSGNode* AmbientGlow::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* canvases = static_cast<Canvases*>(node);
    if (!canvases) {
        canvases = new Canvases;
        m_isDirty = true;
    }
    if (std::exchange(m_isDirty, false)) {
        canvases->set(canvases->lower, m_from, window());
        canvases->set(canvases->upper, m_to, window());
    }
    for (const auto& layer : {canvases->lower, canvases->upper})
        if (layer.image)
            layer.image->setRect(boundingRect());
    if (canvases->lower.opacity)
        canvases->lower.opacity->setOpacity((1 - m_progress) * Glow::strengthOf(m_from));
    if (canvases->upper.opacity)
        canvases->upper.opacity->setOpacity(m_progress * Glow::strengthOf(m_to));
    return canvases;
}

} // namespace lumbra
