// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageLoad.h"

namespace lumbra::PageLoad {

namespace {

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

} // namespace

ListPage starred(const Assets& starred, const PageFilter& filter, const PageList& shown) {
    return {filter.count(starred), {}, PageList::replacing(shown, filter.passing(starred))};
}

ListPage folder(const Scanner::Listing& listing, const PageFilter& filter, SortOrder sort, const PageList& shown) {
    ListPage page;
    page.kindCounts = filter.count(listing.assets);
    for (const Location& folder : listing.folders)
        if (filter.matchesName(folder.lastComponent()))
            page.folders.append(folder);
    page.assets = PageList::replacing(shown, sorted(sort, filter.passing(listing.assets)));
    return page;
}

bool isAsIndexed(const Assets& files, const AssetIndex::Folder* indexed) {
    const auto isSame = [indexed](const Asset& file) {
        const auto place = indexed->find(file.url.lastComponent());
        return place && indexed->assetAt(*place) == file;
    };
    return indexed ? files.size() == qsizetype(indexed->size()) && std::ranges::all_of(files, isSame) : files.isEmpty();
}

ListPage recursive(const AssetIndex& index, const Location& folder, const PageFilter& filter, SortOrder sort,
                   const PageList& shown) {
    ListPage page;
    Assets kept;
    // One pass over the names that the index holds: an asset is made only for what the page shows.
    for (const AssetIndex::FolderPointer& below : index.foldersUnder(folder)) {
        for (size_t i = 0; i < below->size(); ++i) {
            const AssetIndex::File file = below->at(i);
            if (!filter.matches(*below, file.name))
                continue;
            ++page.kindCounts[file.kind];
            if (filter.hasKind(file.kind))
                kept.append(below->assetAt(i));
        }
    }
    page.assets = PageList::replacing(shown, sorted(sort, std::move(kept)));
    return page;
}

Assets shelf(const Assets& starred, const PageFilter& filter) {
    Assets shelf;
    for (const Asset& asset : starred) {
        if (shelf.size() == shelfSize)
            break;
        if (filter.passes(asset))
            shelf.append(asset);
    }
    return shelf;
}

RecentPage recent(const AssetIndex& index, const QList<Location>& hiddenProjects, Date cutoff, const PageFilter& filter,
                  const QList<RecentSection>& shown) {
    RecentPage page;
    RecentCollector collector;
    qsizetype base = 0;
    for (const AssetIndex::FolderPointer& folder : index.folders()) {
        const std::string& path = folder->path();
        const auto hides = [&](const Location& project) { return isAtOrBelow(path, project.view()); };
        if (std::any_of(hiddenProjects.begin(), hiddenProjects.end(), hides))
            continue;
        bool collected = false;
        for (size_t i = 0; i < folder->size(); ++i) {
            const AssetIndex::File file = folder->at(i);
            // The date is the cheapest test and lets the fewest through.
            if (file.modified < cutoff || !filter.matches(*folder, file.name))
                continue;
            ++page.kindCounts[file.kind];
            if (!filter.hasKind(file.kind))
                continue;
            collector.add(file.kind, file.modified, base + qsizetype(i), i);
            collected = true;
        }
        if (collected)
            collector.endFolder(*folder);
        base += qsizetype(folder->size());
    }
    QList<RecentSection> sections = collector.sections(std::make_shared<const AssetIndex>(index));
    if (sections == shown)
        page.sections = shown;
    else
        page.sections = std::move(sections);
    return page;
}

} // namespace lumbra::PageLoad
