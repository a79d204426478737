// SPDX-License-Identifier: GPL-3.0-or-later
#include "ThumbnailPicture.h"

#include "ComposedPicture.h"
#include "KindSymbol.h"
#include "PictureTextures.h"
#include "RoundedPicture.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGNode>
#include <QSGRendererInterface>

namespace lumbra {

namespace {

// The scene graph's side of an item: the glow behind, the picture before it; either may be missing.
class Layers : public QSGNode {
public:
    void set(std::unique_ptr<RoundedPicture>& layer, const QImage& image, PictureTextures& textures, bool inFront) {
        if (layer)
            textures.release(layer->texture());
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
        layer->setTexture(textures.texture(image));
    }

    std::unique_ptr<RoundedPicture> glow;
    std::unique_ptr<RoundedPicture> picture;
};

} // namespace

ThumbnailPicture::ThumbnailPicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

ThumbnailPicture::~ThumbnailPicture() = default;

void ThumbnailPicture::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    // A rewritten file keeps its old picture until the new one is there; another file must not.
    const bool isAnother = m_asset.url != asset.url;
    m_asset = asset;
    if (isAnother) {
        setImage(Thumbnails::shared().peek(asset, Thumbnails::bucket(m_size)));
        setGlow({});
        setFailed(false);
    }
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

void ThumbnailPicture::setHeld(bool held) {
    if (m_isHeld == held)
        return;
    m_isHeld = held;
    Q_EMIT heldChanged();
    load();
}

QString ThumbnailPicture::kindSymbol() const {
    return lumbra::kindSymbol(m_asset.kind);
}

void ThumbnailPicture::componentComplete() {
    QQuickItem::componentComplete();
    load();
}

void ThumbnailPicture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange)
        m_textures = value.window ? &PictureTextures::of(*value.window) : nullptr;
    if (change == ItemVisibleHasChanged || change == ItemSceneChange)
        load();
}

void ThumbnailPicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    lookWhatIsCovered();
    update();
}

void ThumbnailPicture::updatePolish() {
    follow();
}

// Shows what is cached right away, so that a cell that comes back into view does not flash, then sees to what is
// missing.
void ThumbnailPicture::load() {
    stop();
    if (!isComponentComplete() || m_asset.url.isEmpty() || m_size <= 0)
        return;
    Thumbnails& thumbnails = Thumbnails::shared();
    const QImage known = thumbnails.peek(m_asset, Thumbnails::bucket(m_size));
    if (!known.isNull())
        setImage(known);
    if (const QImage glow = m_backdrop ? thumbnails.peekBackdrop(m_asset) : QImage(); !glow.isNull() || !m_backdrop)
        setGlow(glow);
    if (!isVisible() || !window() || m_isHeld)
        return;
    if (!known.isNull()) {
        if (m_backdrop && !covers(known))
            makeGlow(known);
        return;
    }
    m_isMissing = true;
    m_frames = connect(window(), &QQuickWindow::afterAnimating, this, &ThumbnailPicture::follow);
    follow();
    // Views place their cells after making them: look again before the next frame.
    polish();
}

void ThumbnailPicture::stop() {
    ++m_turn;
    m_isMissing = false;
    m_asked.reset();
    m_request = {};
    m_awaited = {};
    disconnect(m_frames);
}

// Asks, asks more urgently, or takes the request back, as the item comes into sight and goes away.
void ThumbnailPicture::follow() {
    if (!m_isMissing)
        return;
    const std::optional<Reader::Urgency> urgency = urgencyWhereItStands();
    // What was urgent stays so while it is near: to ask anew would throw away work under way.
    if (urgency == m_asked || (urgency && m_asked == Reader::Urgency::visible))
        return;
    m_asked = urgency;
    m_request = {};
    m_awaited =
        urgency == Reader::Urgency::visible ? ArrivalPace::Awaited(ArrivalPace::of(*window())) : ArrivalPace::Awaited();
    if (urgency)
        ask(*urgency);
}

// Visible in its window; soon to be so, within one viewport's size; or none of our business.
std::optional<Reader::Urgency> ThumbnailPicture::urgencyWhereItStands() const {
    const QQuickItem* viewport = parentItem();
    while (viewport && !viewport->flags().testFlag(ItemIsViewport))
        viewport = viewport->parentItem();
    QRectF seen(QPointF(), window()->size());
    if (viewport)
        seen &= viewport->mapRectToScene(viewport->boundingRect());
    const QRectF place = mapRectToScene(boundingRect());
    if (place.intersects(seen))
        return Reader::Urgency::visible;
    const QRectF near = seen.adjusted(-seen.width(), -seen.height(), seen.width(), seen.height());
    return place.intersects(near) ? std::optional(Reader::Urgency::soon) : std::nullopt;
}

void ThumbnailPicture::ask(Reader::Urgency urgency) {
    m_request = Thumbnails::shared().imageFor(m_asset, Thumbnails::bucket(m_size), urgency, this,
                                              [this](const QImage& image) { receive(image); });
}

// Shown when it is due, with its glow if that is there by then.
void ThumbnailPicture::receive(const QImage& image) {
    const bool isAll = image.isNull() || !m_backdrop || covers(image);
    if (isAll)
        m_awaited = {};
    whenDue([this, image] { takeImage(image); });
    if (!isAll)
        makeGlow(image);
}

void ThumbnailPicture::takeImage(const QImage& image) {
    m_isMissing = false;
    disconnect(m_frames);
    setImage(image);
    setFailed(image.isNull());
    if (image.isNull())
        setGlow({}); // of the picture that the file had
}

void ThumbnailPicture::makeGlow(const QImage& image) {
    Thumbnails::shared().backdropFor(m_asset, image, this, [this, turn = m_turn](const QImage& glow) {
        if (turn != m_turn)
            return;
        m_awaited = {};
        whenDue([this, glow] {
            if (m_backdrop)
                setGlow(glow);
        });
    });
}

// Unless something else is wanted by then.
void ThumbnailPicture::whenDue(std::function<void()> show) {
    if (!window())
        return;
    ArrivalPace::of(*window()).add(this, m_asked == Reader::Urgency::visible,
                                   [this, turn = m_turn, show = std::move(show)] {
                                       if (turn == m_turn)
                                           show();
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
    lookWhatIsCovered();
    update();
}

bool ThumbnailPicture::covers(const QImage& image) const {
    const QSizeF left = QQuickItem::size() - fittedInto(QQuickItem::size(), image.size()).size();
    return !image.isNull() && !image.hasAlphaChannel() && std::max(left.width(), left.height()) < 1;
}

void ThumbnailPicture::lookWhatIsCovered() {
    const bool isCovering = covers(m_image);
    if (std::exchange(m_isCovering, isCovering) == isCovering)
        return;
    m_glowDirty = true;
    // The glow at hand may be of the picture that the file had.
    if (!isCovering && m_backdrop && !m_image.isNull() && !m_isHeld)
        makeGlow(m_image);
    Q_EMIT coveringChanged();
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

QSGNode* ThumbnailPicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software)
        return composed(static_cast<QSGImageNode*>(node));
    auto* layers = static_cast<Layers*>(node);
    if (!layers) {
        layers = new Layers;
        m_imageDirty = m_glowDirty = true;
    }
    if (std::exchange(m_glowDirty, false))
        layers->set(layers->glow, m_isCovering ? QImage() : m_glow, *m_textures, false);
    if (std::exchange(m_imageDirty, false))
        layers->set(layers->picture, m_image, *m_textures, true);
    const QRectF place = m_isCovering ? boundingRect() : fittedInto(QQuickItem::size(), m_image.size());
    if (layers->glow && layers->picture && !m_image.hasAlphaChannel())
        layers->glow->setPlaceBehind(place, QQuickItem::size(), m_cornerRadius);
    else if (layers->glow)
        layers->glow->setPlace(boundingRect(), QQuickItem::size(), m_cornerRadius);
    if (layers->picture)
        layers->picture->setPlace(place, QQuickItem::size(), m_cornerRadius);
    return layers;
}

// Without a graphics processor there are no shaders.
QSGNode* ThumbnailPicture::composed(QSGImageNode* node) {
    if (m_image.isNull() || boundingRect().isEmpty()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    const QImage image =
        composedPicture(m_image, m_glow, QQuickItem::size(), m_cornerRadius, window()->effectiveDevicePixelRatio());
    node->setTexture(window()->createTextureFromImage(image));
    node->setRect(boundingRect());
    return node;
}

} // namespace lumbra
