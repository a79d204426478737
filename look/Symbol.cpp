// SPDX-License-Identifier: GPL-3.0-or-later
#include "Symbol.h"

#include "Symbols.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace lumbra {

Symbol::Symbol(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setSize(16);
}

void Symbol::setName(const QString& name) {
    if (m_name == name)
        return;
    m_name = name;
    redraw();
    Q_EMIT nameChanged();
}

void Symbol::setSize(qreal size) {
    if (qFuzzyCompare(m_size, size))
        return;
    m_size = size;
    setImplicitSize(size, size);
    redraw();
    Q_EMIT sizeChanged();
}

void Symbol::setColor(const QColor& color) {
    if (m_color == color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

void Symbol::redraw() {
    m_stale = true;
    polish();
}

void Symbol::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        redraw();
    if (change == ItemVisibleHasChanged && m_stale)
        polish();
    QQuickItem::itemChange(change, data);
}

void Symbol::updatePolish() {
    // One that is not seen is not drawn anew with each step of its size, but once it comes.
    if (!m_stale || !window() || !isVisible())
        return;
    const int pixels = int(std::lround(m_size * window()->effectiveDevicePixelRatio()));
    m_picture = Symbols::image(m_name, pixels, m_color);
    update();
}

QSGNode* Symbol::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(old);
    if (m_picture.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_stale = true;
    }
    if (m_stale) {
        constexpr QQuickWindow::CreateTextureOptions options(QQuickWindow::TextureCanUseAtlas
                                                             | QQuickWindow::TextureHasAlphaChannel);
        node->setTexture(window()->createTextureFromImage(m_picture, options));
        m_stale = false;
    }
    // Square and in the middle, whatever room a layout gave it.
    const QPointF origin(std::round((width() - m_size) / 2), std::round((height() - m_size) / 2));
    node->setFiltering(QSGTexture::Linear);
    node->setRect(QRectF(origin, QSizeF(m_size, m_size)));
    return node;
}

} // namespace lumbra
