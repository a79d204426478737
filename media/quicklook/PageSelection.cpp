// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageSelection.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace lumbra {

namespace {

// Beyond the first and the last word of any page.
constexpr QPointF beforeAll(0, -1e5), behindAll(0, 1e5);

bool isBefore(const PageLayout::Spot& a, const PageLayout::Spot& b) {
    return a.page != b.page ? a.page < b.page : a.part.y() < b.part.y();
}

} // namespace

void PageSelection::setPages(DocumentPages* pages) {
    if (m_pages == pages)
        return;
    if (m_pages)
        m_pages->disconnect(this);
    m_pages = pages;
    clear();
    if (pages) {
        connect(pages, &DocumentPages::contentChanged, this, &PageSelection::clear);
        connect(pages, &DocumentPages::rowsInserted, this, &PageSelection::remark); // pages came near
    }
    Q_EMIT pagesChanged();
}

void PageSelection::begin(const QVariantMap& spot, int clicks) {
    clear();
    m_from = m_to = DocumentPages::spotFrom(spot);
    m_byWords = clicks > 1;
    m_isMarked = m_byWords;
    remark();
}

void PageSelection::extend(const QVariantMap& spot) {
    m_to = DocumentPages::spotFrom(spot);
    m_isMarked = true;
    remark();
}

void PageSelection::selectAll() {
    if (!m_pages || m_pages->pageCount() == 0)
        return;
    m_from = {0, beforeAll};
    m_to = {m_pages->pageCount() - 1, behindAll};
    m_byWords = false;
    m_isMarked = true;
    remark();
}

void PageSelection::clear() {
    m_isMarked = false;
    m_marked.clear();
    m_copying = {};
    ++m_version;
    Q_EMIT changed();
}

std::pair<PageLayout::Spot, PageLayout::Spot> PageSelection::ends() const {
    return isBefore(m_to, m_from) ? std::pair(m_to, m_from) : std::pair(m_from, m_to);
}

std::optional<Reader::PageTextWish> PageSelection::wishFor(int page) const {
    using Grain = Reader::PageTextWish::Grain;
    const auto [first, last] = ends();
    if (!m_isMarked || !m_pages || page < first.page || page > last.page)
        return std::nullopt;
    const QSizeF size = m_pages->sizeOf(page);
    const auto pointOf = [&size](const PageLayout::Spot& spot) {
        return QPointF(spot.part.x() * size.width(), std::clamp(spot.part.y() * size.height(), -1e5, 1e5));
    };
    const bool begins = page == first.page, ends = page == last.page;
    return Reader::PageTextWish{.page = page,
                                .from = begins ? pointOf(first) : beforeAll,
                                .to = ends ? pointOf(last) : behindAll,
                                .grain = !begins && !ends ? Grain::page
                                         : m_byWords      ? Grain::words
                                                          : Grain::characters};
}

// Asks for what is near the view. What was known stays until the new is there, so that nothing flickers.
void PageSelection::remark() {
    if (!m_pages || !m_isMarked)
        return;
    const auto [first, last] = m_pages->nearPages();
    std::erase_if(m_marked, [this](const auto& marked) { return !wishFor(marked.first); });
    for (int page = first; page <= last; ++page)
        if (wishFor(page))
            ask(page);
    ++m_version;
    Q_EMIT changed();
}

// One question for a page at a time: the pointer moves faster than the readers answer.
void PageSelection::ask(int page) {
    Marked& marked = m_marked[page];
    const std::optional<Reader::PageTextWish> wish = wishFor(page);
    if (marked.asked || marked.made == wish)
        return;
    marked.asked = wish;
    const std::stop_source stop;
    marked.request = MediaRequest(stop);
    Reader::shared()
        .pageText(m_pages->file(), *wish, Reader::Urgency::visible, stop.get_token())
        .then(this, [this, page, token = stop.get_token()](const Reader::PageText& text) {
            if (token.stop_requested())
                return;
            Marked& answered = m_marked[page];
            answered.text = text;
            answered.made = std::exchange(answered.asked, std::nullopt);
            if (wishFor(page))
                ask(page);
            ++m_version;
            Q_EMIT changed();
        });
}

QVariantList PageSelection::placesOn(int page) const {
    QVariantList places;
    const auto marked = m_marked.find(page);
    if (!m_isMarked || !m_pages || marked == m_marked.end())
        return places;
    const QSizeF size = m_pages->sizeOf(page);
    for (const QRectF& place : marked->second.text.places)
        places.append(QRectF(place.x() / size.width(), place.y() / size.height(), place.width() / size.width(),
                             place.height() / size.height()));
    return places;
}

void PageSelection::copy() {
    if (m_isMarked)
        collect(ends().first.page, {});
}

void PageSelection::collect(int page, const QStringList& words) {
    const std::optional<Reader::PageTextWish> wish = wishFor(page);
    if (!wish) {
        if (const QString all = words.join(u'\n'); !all.isEmpty())
            QGuiApplication::clipboard()->setText(all);
        return;
    }
    const std::stop_source stop;
    m_copying = MediaRequest(stop);
    Reader::shared()
        .pageText(m_pages->file(), *wish, Reader::Urgency::soon, stop.get_token())
        .then(this, [this, page, words, token = stop.get_token()](const Reader::PageText& text) {
            if (!token.stop_requested())
                collect(page + 1, words + QStringList(QString(text.words).remove(u'\r')));
        });
}

} // namespace lumbra
