// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentPage.h"

#include "media/PictureCache.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

// The pixels of a whole page; 32 MB. What is larger has its detail.
constexpr double mostPixels = 8'000'000;

// A detail ends on these, so that a small movement asks for no other.
constexpr int detailStep = 128;

constexpr Qt::GlobalColor paper = Qt::white;

// The pages that were seen last, as they were drawn: whoever comes back to them sees no bare paper.
PictureCache& memories() {
    static PictureCache cache(40 * 1024 * 1024);
    return cache;
}

QSize bounded(QSizeF size) {
    return size.toSize().expandedTo({1, 1}).boundedTo({reader::longestPage, reader::longestPage});
}

// Paper, page and detail, in the order of drawing. It moves nothing: without a graphics processor only children of
// such a node are drawn in their place when they are added later.
class Sheet : public QSGTransformNode {
public:
    explicit Sheet(QQuickWindow* window) : m_paper(window->createRectangleNode()) {
        m_paper->setColor(paper);
        appendChildNode(m_paper);
    }

    void setPlace(const QRectF& place) { m_paper->setRect(place); }

    // The page lies below its detail, whichever comes first.
    void set(QSGImageNode*& layer, const QImage& image, QQuickWindow* window) {
        if (image.isNull()) {
            delete layer;
            layer = nullptr;
            return;
        }
        const bool isNew = !layer;
        if (isNew) {
            layer = window->createImageNode();
            layer->setOwnsTexture(true);
            layer->setFiltering(QSGTexture::Linear);
        }
        layer->setTexture(window->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
        // Only now: without a graphics processor a node is looked into as soon as it is added.
        if (isNew && &layer == &whole)
            insertChildNodeAfter(layer, m_paper);
        else if (isNew)
            appendChildNode(layer);
    }

    QSGImageNode* whole = nullptr;
    QSGImageNode* detail = nullptr;

private:
    QSGRectangleNode* m_paper;
};

} // namespace

DocumentPage::DocumentPage(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void DocumentPage::setFile(const Location& file) {
    if (m_file == file)
        return;
    m_file = file;
    m_whole = {};
    m_detail = {};
    m_whole.isFresh = m_detail.isFresh = true;
    update();
    Q_EMIT fileChanged();
    Q_EMIT drawnChanged();
    polish();
}

void DocumentPage::setPage(int page) {
    if (m_page == page)
        return;
    m_page = page;
    Q_EMIT pageChanged();
    reload();
}

void DocumentPage::setEdition(const QString& edition) {
    if (m_edition == edition)
        return;
    m_edition = edition;
    Q_EMIT editionChanged();
    reload();
}

void DocumentPage::setPoster(const QImage& poster) {
    if (m_poster.cacheKey() == poster.cacheKey())
        return;
    m_poster = poster;
    m_whole.isFresh = true;
    update();
    Q_EMIT posterChanged();
}

void DocumentPage::setSeen(const QRectF& seen) {
    if (m_seen == seen)
        return;
    const bool comesInSight = m_seen.isEmpty();
    m_seen = seen;
    if (comesInSight)
        remember();
    Q_EMIT seenChanged();
    polish();
}

void DocumentPage::componentComplete() {
    QQuickItem::componentComplete();
    polish();
}

void DocumentPage::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    update();
    polish();
}

void DocumentPage::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged || change == ItemVisibleHasChanged)
        polish();
}

// What is shown stays until it is replaced.
void DocumentPage::reload() {
    for (Picture* const picture : {&m_whole, &m_detail}) {
        picture->made.reset();
        picture->asked.reset();
        picture->request = {};
        picture->isCurrent = false;
    }
    polish();
}

QString DocumentPage::memory() const {
    return QStringLiteral("%1|%2|%3").arg(m_edition).arg(m_page).arg(m_file.toString());
}

// Pages that are only near are not: they would drive out those that one comes back to.
void DocumentPage::remember() const {
    if (m_whole.isCurrent && !m_seen.isEmpty() && !m_edition.isEmpty())
        memories().insert(memory(), m_whole.image);
}

// What it was drawn for is what it is as large as: another size is asked for anew.
void DocumentPage::recall() {
    const QImage image = isDrawn() || m_edition.isEmpty() ? QImage() : memories().find(memory());
    if (!image.isNull())
        put(m_whole, {image.size(), image.rect()}, image);
}

void DocumentPage::updatePolish() {
    if (!isComponentComplete() || !window() || !isVisible() || m_file.isEmpty())
        return;
    recall();
    ask(m_whole, wishForWhole());
    const std::optional<Wish> detail = wishForDetail();
    if (!detail && !m_detail.image.isNull() && m_whole.made == wishForWhole()) {
        m_detail = {};
        m_detail.isFresh = true;
        update();
    }
    ask(m_detail, detail);
}

std::optional<DocumentPage::Wish> DocumentPage::wishForWhole() const {
    if (size().isEmpty())
        return std::nullopt;
    QSizeF pixels = size() * window()->effectiveDevicePixelRatio();
    const double tooMany = std::sqrt(pixels.width() * pixels.height() / mostPixels);
    const double tooLong = std::max(pixels.width(), pixels.height()) / reader::longestSide;
    pixels /= std::max({1.0, tooMany, tooLong});
    const QSize whole = bounded(pixels);
    return Wish{whole, QRect(QPoint(), whole)};
}

// Absent where the whole is as sharp, and for what is not seen.
std::optional<DocumentPage::Wish> DocumentPage::wishForDetail() const {
    const std::optional<Wish> whole = wishForWhole();
    const QRectF seen = m_seen & boundingRect();
    if (!whole || seen.isEmpty())
        return std::nullopt;
    const double scale = window()->effectiveDevicePixelRatio();
    const QSize pixels = bounded(size() * scale);
    if (whole->whole.width() >= pixels.width())
        return std::nullopt;
    const auto before = [](double at) { return int(std::floor(at / detailStep)) * detailStep; };
    const auto behind = [](double at) { return int(std::ceil(at / detailStep)) * detailStep; };
    QRect part(QPoint(before(seen.left() * scale), before(seen.top() * scale)),
               QPoint(behind(seen.right() * scale) - 1, behind(seen.bottom() * scale) - 1));
    part &= QRect(QPoint(), pixels);
    part.setSize(part.size().boundedTo({reader::longestSide, reader::longestSide}));
    return Wish{pixels, part};
}

void DocumentPage::ask(Picture& picture, const std::optional<Wish>& wish) {
    if (!wish || picture.made == wish || picture.asked == wish) {
        if (!wish || picture.made == wish) {
            picture.asked.reset();
            picture.request = {};
        }
        return;
    }
    const std::stop_source stop;
    picture.request = MediaRequest(stop);
    picture.asked = wish;
    const Reader::Urgency urgency = m_seen.isEmpty() ? Reader::Urgency::soon : Reader::Urgency::visible;
    Reader::shared()
        .page(m_file, {.page = m_page, .whole = wish->whole, .part = wish->part}, urgency, stop.get_token())
        .then(this, [this, &picture, wish = *wish, token = stop.get_token()](const QImage& image) {
            if (!token.stop_requested())
                take(picture, wish, image);
        });
}

void DocumentPage::take(Picture& picture, const Wish& wish, const QImage& image) {
    picture.asked.reset();
    picture.made = wish; // a page that can't be drawn is not tried again
    if (image.isNull())
        return;
    put(picture, wish, image);
    polish(); // a detail may be needed no more
    remember();
}

void DocumentPage::put(Picture& picture, const Wish& wish, const QImage& image) {
    const bool wasDrawn = isDrawn();
    const QSizeF whole(wish.whole);
    picture.made = wish;
    picture.isCurrent = true;
    picture.image = image;
    picture.place = QRectF(wish.part.x() / whole.width(), wish.part.y() / whole.height(),
                           wish.part.width() / whole.width(), wish.part.height() / whole.height());
    picture.isFresh = true;
    update();
    if (!wasDrawn)
        Q_EMIT drawnChanged();
}

QSGNode* DocumentPage::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* sheet = static_cast<Sheet*>(node);
    if (!sheet) {
        sheet = new Sheet(window());
        m_whole.isFresh = m_detail.isFresh = true;
    }
    sheet->setPlace(boundingRect());
    const auto draw = [this, sheet](QSGImageNode*& layer, Picture& picture, const QImage& poster) {
        const bool isPoster = picture.image.isNull();
        if (std::exchange(picture.isFresh, false))
            sheet->set(layer, isPoster ? poster : picture.image, window());
        const QRectF place = isPoster ? QRectF(0, 0, 1, 1) : picture.place;
        if (layer)
            layer->setRect(
                QRectF(place.x() * width(), place.y() * height(), place.width() * width(), place.height() * height()));
    };
    draw(sheet->whole, m_whole, m_poster);
    draw(sheet->detail, m_detail, {});
    return sheet;
}

} // namespace lumbra
