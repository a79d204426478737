// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileMenus.h"

#include "core/Clipboard.h"
#include "platform/Desktop.h"

namespace lumbra::TileMenus {

namespace {

MenuEntry showInFinder(const QList<Location>& urls) {
    return MenuEntry::item(QStringLiteral("Show in Finder"), [urls] { Desktop::reveal(urls); });
}

MenuEntry copyPaths(const QList<Location>& urls) {
    return MenuEntry::item(urls.size() == 1 ? QStringLiteral("Copy Path") : QStringLiteral("Copy Paths"), [urls] {
        QStringList paths;
        for (const Location& url : urls)
            paths << url.toString();
        Clipboard::copyText(paths.join(u'\n'));
    });
}

// The page acts on the reveal when the folder has loaded, so the file is named before the place changes.
MenuEntry goToFolder(Library* library, const Location& url) {
    return MenuEntry::item(QStringLiteral("Go to Folder"), [library, url] {
        library->setPendingReveal(url);
        library->setPlace(Place::folder(url.parent()));
    });
}

} // namespace

QList<MenuEntry> asset(Library* library, const Location& url, const QList<Location>& targets) {
    QList<MenuEntry> entries{
        MenuEntry::item(QStringLiteral("Open"), [targets] { Desktop::open(targets); }),
        showInFinder(targets),
    };
    if (!library->place().is(Place::Case::folder))
        entries.append(goToFolder(library, url));
    entries.append(MenuEntry::divider());
    entries.append(copyPaths(targets));
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
