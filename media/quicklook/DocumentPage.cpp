// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentPage.h"

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

void DocumentPage::setVersion(int version) {
    if (m_version == version)
        return;
    m_version = version;
    Q_EMIT versionChanged();
    reload();
}

void DocumentPage::setSeen(const QRectF& seen) {
    if (m_seen == seen)
        return;
    m_seen = seen;
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
    }
    polish();
}

void DocumentPage::updatePolish() {
    if (!isComponentComplete() || !window() || !isVisible() || m_file.isEmpty())
        return;
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
    const bool wasDrawn = isDrawn();
    picture.asked.reset();
    picture.made = wish; // a page that can't be drawn is not tried again
    if (image.isNull())
        return;
    const QSizeF whole(wish.whole);
    picture.image = image;
    picture.place = QRectF(wish.part.x() / whole.width(), wish.part.y() / whole.height(),
                           wish.part.width() / whole.width(), wish.part.height() / whole.height());
    picture.isFresh = true;
    update();
    polish(); // a detail may be needed no more
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
    const auto draw = [this, sheet](QSGImageNode*& layer, Picture& picture) {
        if (std::exchange(picture.isFresh, false))
            sheet->set(layer, picture.image, window());
        if (layer)
            layer->setRect(QRectF(picture.place.x() * width(), picture.place.y() * height(),
                                  picture.place.width() * width(), picture.place.height() * height()));
    };
    draw(sheet->whole, m_whole);
    draw(sheet->detail, m_detail);
    return sheet;
}

} // namespace lumbra
