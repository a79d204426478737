// What a page holds, computed from copies of the library's published data: one pure function for each kind of page, for
// any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageFilter.h"
#include "PageList.h"
#include "RecentSections.h"
#include "library/AssetIndex.h"
#include "library/Scanner.h"

namespace lumbra {

// All that a page's content depends on: a page loads again when it differs. What only changes how the content is drawn
// (the zoom, the revealed part of a section, the inspector) is not in it.
struct LoadKey {
    Place place;
    int revision = 0;
    bool recursive = false;
    QString kind;
    SortOrder sort = SortOrder::newest;
    QString search;
    int days = 0;

    friend bool operator==(const LoadKey&, const LoadKey&) = default;
};

// The files of a folder page or of the starred page. `folders` are the folder tiles.
struct ListPage {
    KindCounts kindCounts;
    QList<Location> folders;
    PageList assets;
};

struct RecentPage {
    KindCounts kindCounts;
    QList<RecentSection> sections;
};

namespace PageLoad {

constexpr qsizetype shelfSize = 6;

// `shown` is the list that the page shows now; it comes back as it is if nothing changed, and so for `shown` below.
ListPage starred(const Assets& starred, const PageFilter& filter, const PageList& shown);

// A folder's direct contents. Content hits find files only, never folders.
ListPage folder(const Scanner::Listing& listing, const PageFilter& filter, SortOrder sort, const PageList& shown);

// Whether these files of a folder are those that the index has of it, in whatever order; null if it has none.
bool isAsIndexed(const Assets& files, const AssetIndex::Folder* indexed);

// Everything below a folder, without folder tiles.
ListPage recursive(const AssetIndex& index, const Location& folder, const PageFilter& filter, SortOrder sort,
                   const PageList& shown);

// The starred files at the top of the Recent page, however old they are.
Assets shelf(const Assets& starred, const PageFilter& filter);

// The feed: files modified at `cutoff` or later, outside the hidden projects.
RecentPage recent(const AssetIndex& index, const QList<Location>& hiddenProjects, Date cutoff, const PageFilter& filter,
                  const QList<RecentSection>& shown);

} // namespace PageLoad
} // namespace lumbra
