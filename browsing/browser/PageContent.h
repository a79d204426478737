// What a page draws and in which order one steps through it, from its lists. Pure values and functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageList.h"
#include "PageRows.h"
#include "RecentSections.h"

#include <QMap>

namespace lumbra {

// How many entries of each section of the feed are revealed: the first few, and more at each press of its button.
class SectionLimits {
public:
    qsizetype of(AssetKind kind) const { return m_limits.value(kind, first); }
    void reveal(AssetKind kind) { m_limits[kind] = of(kind) + more; }

    QList<RecentEntry> visible(const RecentSection& section) const;

private:
    static constexpr qsizetype first = 24;
    static constexpr qsizetype more = 48;

    QMap<AssetKind, qsizetype> m_limits; // a kind that is absent shows the first
};

struct PageContent {
    QList<Location> folders;
    PageList assets;
    Assets shelf;
    QList<RecentSection> sections;
};

// Whether the page of the place draws `assets`; the Recent page draws the shelf and the sections.
bool listsAssets(const Place& place);

// Whether the page of the place draws tiles of files at all. A group's draws cards, that of Tidy suggestions.
bool drawsTiles(const Place& place);

// The grids of the place's page, from the top.
QList<PageBlock> pageBlocks(const Place& place, const PageContent& content, const SectionLimits& limits);

// All selectable tiles in page order. Stacks are none. Of every page but a folder's and the starred one it is that of
// the feed. `previous` comes back as it is if nothing changed.
PageList pageOrder(const Place& place, const PageContent& content, const SectionLimits& limits,
                   const PageList& previous = {});

// What the shelf's block and its header are known by.
inline constexpr QLatin1String shelfSection{"starred"};

} // namespace lumbra
