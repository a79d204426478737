// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageContent.h"

#include "PageText.h"

namespace lumbra {

namespace {

constexpr int feedGap = 26;

QList<PageBlock> feed(const PageContent& content, const SectionLimits& limits) {
    QList<PageBlock> blocks;
    if (!content.shelf.isEmpty())
        blocks.append({.section = shelfSection,
                       .assets = PageList(content.shelf),
                       .captioned = true,
                       .onShelf = true,
                       .gap = feedGap});
    for (const RecentSection& section : content.sections) {
        const QList<RecentEntry> visible = limits.visible(section);
        blocks.append({.section = rawValue(section.kind),
                       .entries = visible,
                       .captioned = true,
                       .more = visible.size() < section.entries.size() ? PageText::showMore(section.kind) : QString(),
                       .gap = feedGap});
    }
    if (!blocks.isEmpty())
        blocks.last().gap = PageRows::margin;
    return blocks;
}

} // namespace

QList<RecentEntry> SectionLimits::visible(const RecentSection& section) const {
    return section.entries.first(std::min(section.entries.size(), of(section.kind)));
}

bool listsAssets(const Place& place) {
    return place.is(Place::Case::folder) || place.is(Place::Case::starred);
}

bool drawsTiles(const Place& place) {
    return listsAssets(place) || place.is(Place::Case::recent);
}

QList<PageBlock> pageBlocks(const Place& place, const PageContent& content, const SectionLimits& limits) {
    switch (place.which()) {
    case Place::Case::folder:
        return {{.folders = content.folders, .assets = content.assets}};
    case Place::Case::starred:
        return {{.assets = content.assets, .captioned = true}};
    case Place::Case::recent:
        return feed(content, limits);
    case Place::Case::group:
    case Place::Case::tidy:
        break;
    }
    return {};
}

PageList pageOrder(const Place& place, const PageContent& content, const SectionLimits& limits,
                   const PageList& previous) {
    if (listsAssets(place))
        return content.assets;
    Assets order = content.shelf;
    for (const RecentSection& section : content.sections)
        for (const RecentEntry& entry : limits.visible(section))
            if (const auto* asset = std::get_if<Asset>(&entry))
                order.append(*asset);
    return PageList::replacing(previous, std::move(order));
}

} // namespace lumbra
