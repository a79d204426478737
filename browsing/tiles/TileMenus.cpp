// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileMenus.h"

#include "library/Actions.h"
#include "platform/Desktop.h"

#include <algorithm>

namespace lumbra::TileMenus {

namespace {

MenuEntry showInFinder(const QList<Location>& urls) {
    return MenuEntry::item(QStringLiteral("Show in Finder"), [urls] { Desktop::reveal(urls); });
}

MenuEntry copyPaths(const QList<Location>& urls) {
    return MenuEntry::item(urls.size() == 1 ? QStringLiteral("Copy Path") : QStringLiteral("Copy Paths"),
                           [urls] { Actions::copyPaths(urls); });
}

// The page acts on the reveal when the folder has loaded, so the file is named before the place changes.
MenuEntry goToFolder(Library* library, const Location& url) {
    return MenuEntry::item(QStringLiteral("Go to Folder"), [library, url] {
        library->setPendingReveal(url);
        library->setPlace(Place::folder(url.parent()));
    });
}

} // namespace

QList<MenuEntry> asset(Library* library, const Page& page, const Location& url, const QList<Location>& targets) {
    const bool allStarred =
        std::ranges::all_of(targets, [library](const Location& target) { return library->isStarred(target); });
    QList<MenuEntry> entries{
        MenuEntry::item(allStarred ? QStringLiteral("Unstar") : QStringLiteral("Star"),
                        [library, targets] { library->toggleStar(targets); }),
        MenuEntry::item(QStringLiteral("Open"), [targets] { Actions::open(targets); }),
        showInFinder(targets),
    };
    if (!library->place().is(Place::Case::folder))
        entries += goToFolder(library, url);
    entries += MenuEntry::divider();
    entries += MenuEntry::item(QStringLiteral("Copy"), [library, targets] { Actions::copy(targets, library); });
    entries += copyPaths(targets);
    entries +=
        MenuEntry::item(QStringLiteral("Export…"), [library, targets] { Actions::exportFiles(targets, library); });
    entries += MenuEntry::divider();
    if (targets.size() == 1)
        entries +=
            MenuEntry::item(QStringLiteral("Rename…"), [page, target = targets.first()] { page.rename(target); });
    entries +=
        MenuEntry::item(QStringLiteral("Move to Trash"), [page, targets] { page.trash(targets); }).thatDestroys();
    return entries;
}

QList<MenuEntry> folder(Library* library, const Location& url) {
    const auto relative = library->relativePath(url);
    const bool pinned = relative && library->state().pins.contains(*relative);
    return {
        MenuEntry::item(QStringLiteral("Open"), [library, url] { library->setPlace(Place::folder(url)); }),
        MenuEntry::item(pinned ? QStringLiteral("Unpin") : QStringLiteral("Pin to Top"),
                        [library, url] { library->togglePin(url); }),
        showInFinder({url}),
        copyPaths({url}),
    };
}

} // namespace lumbra::TileMenus
