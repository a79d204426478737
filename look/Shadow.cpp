// SPDX-License-Identifier: GPL-3.0-or-later
#include "Shadow.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <cmath>
#include <vector>

namespace lumbra {
namespace {

// Slides a window of 2 * reach + 1 pixels along a line. Three passes come within 3% of a Gaussian.
void boxBlur(std::vector<float>& line, std::vector<float>& scratch, int reach) {
    const int count = int(line.size());
    float sum = 0;
    for (int i = -reach; i < count; ++i) {
        if (i + reach < count)
            sum += line[size_t(i + reach)];
        if (i - reach - 1 >= 0)
            sum -= line[size_t(i - reach - 1)];
        if (i >= 0)
            scratch[size_t(i)] = sum / float(2 * reach + 1);
    }
    line.swap(scratch);
}

// The blurred alpha of a rounded square just large enough that its middle row and column can be stretched.
QImage blurred(qreal radius, qreal blur, const QColor& color, qreal scale) {
    const int margin = int(std::ceil(blur * scale));
    const int core = int(std::ceil((radius + blur) * scale)) * 2 + 1;
    const int side = core + 2 * margin;
    QImage shape(side, side, QImage::Format_Alpha8);
    shape.fill(0);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(margin, margin, core, core), radius * scale, radius * scale);
    painter.end();

    // Half the blur is the deviation; three boxes of this reach add up to it.
    const int reach = std::max(1, int(std::lround((std::sqrt(4 * std::pow(blur * scale / 2, 2) + 1) - 1) / 2)));
    std::vector<float> alpha(size_t(side) * size_t(side));
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            alpha[size_t(y * side + x)] = float(shape.constScanLine(y)[x]) / 255;
    std::vector<float> line(static_cast<size_t>(side));
    std::vector<float> scratch(static_cast<size_t>(side));
    const auto blurLines = [&](int step, int next) {
        for (int start = 0; start < side; ++start) {
            for (int i = 0; i < side; ++i)
                line[size_t(i)] = alpha[size_t(start * next + i * step)];
            for (int pass = 0; pass < 3; ++pass)
                boxBlur(line, scratch, reach);
            for (int i = 0; i < side; ++i)
                alpha[size_t(start * next + i * step)] = line[size_t(i)];
        }
    };
    blurLines(1, side);
    blurLines(side, 1);

    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const float value = alpha[size_t(y * side + x)] * color.alphaF();
            row[x] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), int(std::lround(value * 255))));
        }
    }
    return picture;
}

} // namespace

Shadow::Shadow(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &Shadow::changed, this, [this] {
        m_stale = true;
        update();
    });
}

void Shadow::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        m_stale = true;
        update();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode* Shadow::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGNinePatchNode*>(old);
    if (width() <= 0 || height() <= 0 || m_blur <= 0) {
        delete node;
        return nullptr;
    }
    const qreal scale = window()->effectiveDevicePixelRatio();
    if (!node) {
        node = window()->createNinePatchNode();
        m_stale = true;
    }
    if (m_stale) {
        node->setTexture(window()->createTextureFromImage(blurred(m_radius, m_blur, m_color, scale),
                                                          QQuickWindow::TextureHasAlphaChannel));
        m_stale = false;
    }
    const qreal corner = m_radius + 2 * m_blur;
    node->setBounds(QRectF(-m_blur, m_drop - m_blur, width() + 2 * m_blur, height() + 2 * m_blur));
    node->setDevicePixelRatio(scale);
    // A surface smaller than two corners lets them meet in its middle.
    const qreal across = std::min(corner, width() / 2 + m_blur);
    const qreal down = std::min(corner, height() / 2 + m_blur);
    node->setPadding(across, down, across, down);
    node->update();
    return node;
}

} // namespace lumbra
