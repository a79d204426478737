// SPDX-License-Identifier: GPL-3.0-or-later
#include "ThumbnailPicture.h"

#include "RoundedPicture.h"

#include <QQuickWindow>
#include <QSGNode>

namespace lumbra {

namespace {

// The scene graph's side of an item: the glow behind, the picture before it; either may be missing.
class Layers : public QSGNode {
public:
    void set(std::unique_ptr<RoundedPicture>& layer, const QImage& image, QQuickWindow* window, bool inFront) {
        if (image.isNull()) {
            if (layer)
                removeChildNode(layer.get());
            layer.reset();
            return;
        }
        if (!layer) {
            layer = std::make_unique<RoundedPicture>();
            layer->setFlag(OwnedByParent, false);
            inFront ? appendChildNode(layer.get()) : prependChildNode(layer.get());
        }
        layer->setTexture(std::unique_ptr<QSGTexture>(window->createTextureFromImage(image)));
    }

    std::unique_ptr<RoundedPicture> glow;
    std::unique_ptr<RoundedPicture> picture;
};

} // namespace

ThumbnailPicture::ThumbnailPicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void ThumbnailPicture::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    // A rewritten file keeps its old picture until the new one is there; another file must not.
    if (m_asset.url != asset.url) {
        setImage({});
        setGlow({});
    }
    m_asset = asset;
    Q_EMIT assetChanged();
    load();
}

void ThumbnailPicture::setSize(double size) {
    if (m_size == size)
        return;
    const bool sameBucket = Thumbnails::bucket(m_size) == Thumbnails::bucket(size);
    m_size = size;
    Q_EMIT sizeChanged();
    if (!sameBucket)
        load();
}

void ThumbnailPicture::setBackdrop(bool wanted) {
    if (m_backdrop == wanted)
        return;
    m_backdrop = wanted;
    Q_EMIT backdropChanged();
    load();
}

void ThumbnailPicture::setCornerRadius(double radius) {
    if (m_cornerRadius == radius)
        return;
    m_cornerRadius = radius;
    Q_EMIT cornerRadiusChanged();
    update();
}

QString ThumbnailPicture::kindSymbol() const {
    switch (m_asset.kind) {
    case AssetKind::image:
        return QStringLiteral("photo");
    case AssetKind::video:
        return QStringLiteral("film");
    case AssetKind::audio:
        return QStringLiteral("waveform");
    case AssetKind::document:
        break;
    }
    return QStringLiteral("doc");
}

void ThumbnailPicture::componentComplete() {
    QQuickItem::componentComplete();
    load();
}

void ThumbnailPicture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged) {
        if (value.boolValue)
            load();
        else
            m_request = {};
    }
}

void ThumbnailPicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

// Shows what is cached right away, so that a cell that comes back into view does not flash, then asks for what is
// missing.
void ThumbnailPicture::load() {
    m_request = {};
    if (!isComponentComplete() || !isVisible() || m_asset.url.isEmpty() || m_size <= 0)
        return;
    Thumbnails& thumbnails = Thumbnails::shared();
    const int bucket = Thumbnails::bucket(m_size);
    if (const QImage known = thumbnails.peek(m_asset, bucket); !known.isNull())
        setImage(known);
    if (m_backdrop)
        setGlow(thumbnails.peekBackdrop(m_asset));
    m_request = thumbnails.image(m_asset, bucket, isInSight() ? Reader::Urgency::visible : Reader::Urgency::soon, this,
                                 [this, asset = m_asset](const QImage& image) {
                                     if (asset == m_asset)
                                         takeImage(image);
                                 });
}

void ThumbnailPicture::takeImage(const QImage& image) {
    setImage(image);
    setFailed(image.isNull());
    if (!m_backdrop || image.isNull() || !m_glow.isNull())
        return;
    Thumbnails::shared().backdrop(m_asset, image, this, [this, asset = m_asset](const QImage& glow) {
        if (asset == m_asset)
            setGlow(glow);
    });
}

void ThumbnailPicture::setImage(const QImage& image) {
    if (m_image.cacheKey() == image.cacheKey())
        return;
    m_image = image;
    m_imageDirty = true;
    if (!image.isNull())
        setFailed(false);
    Q_EMIT imageChanged();
    update();
}

void ThumbnailPicture::setGlow(const QImage& glow) {
    if (m_glow.cacheKey() == glow.cacheKey())
        return;
    m_glow = glow;
    m_glowDirty = true;
    update();
}

void ThumbnailPicture::setFailed(bool failed) {
    if (std::exchange(m_failed, failed) != failed)
        Q_EMIT failedChanged();
}

bool ThumbnailPicture::isInSight() const {
    return window() && mapRectToScene(boundingRect()).intersects(QRectF(QPointF(), window()->size()));
}

// The picture whole, as large as the item allows.
QRectF ThumbnailPicture::fitted() const {
    QRectF rect(QPointF(), QSizeF(m_image.size()).scaled(boundingRect().size(), Qt::KeepAspectRatio));
    rect.moveCenter(boundingRect().center());
    return rect;
}

QSGNode* ThumbnailPicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* layers = static_cast<Layers*>(node);
    if (!layers) {
        layers = new Layers;
        m_imageDirty = m_glowDirty = true;
    }
    if (std::exchange(m_glowDirty, false))
        layers->set(layers->glow, m_glow, window(), false);
    if (std::exchange(m_imageDirty, false))
        layers->set(layers->picture, m_image, window(), true);
    if (layers->glow)
        layers->glow->setPlace(boundingRect(), boundingRect().size(), m_cornerRadius);
    if (layers->picture)
        layers->picture->setPlace(fitted(), boundingRect().size(), m_cornerRadius);
    return layers;
}

} // namespace lumbra
