// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileMenus.h"

#include "library/Actions.h"
#include "library/Scanner.h"
#include "platform/Desktop.h"
#include "platform/Tasks.h"

#include <QPointer>

namespace lumbra::TileMenus {

namespace {

// The page's own list tells of a file at once. One that has no star there may have got it since, which the library
// knows.
bool areAllStarred(const Library* library, const PathSet& targets) {
    return targets.holdsForAll(
        [library](const Asset& asset) { return asset.isStarred() || library->isStarred(asset.url); });
}

MenuEntry showInFinder(const PathSet& targets) {
    return MenuEntry::item(QStringLiteral("Show in Finder"), [targets] { Desktop::reveal(targets.paths()); });
}

MenuEntry copyPaths(const PathSet& targets) {
    return MenuEntry::item(targets.size() == 1 ? QStringLiteral("Copy Path") : QStringLiteral("Copy Paths"),
                           [targets] { Actions::copyPaths(targets.paths()); });
}

// The page acts on the reveal when the folder has loaded, so the file is named before the place changes.
MenuEntry goToFolder(Library* library, const Location& url) {
    return MenuEntry::item(QStringLiteral("Go to Folder"), [library, url] {
        library->setPendingReveal(url);
        library->setPlace(Place::folder(url.parent()));
    });
}

MenuEntry bringTo(Library* library, const QString& title, const PathSet& targets, const Location& folder) {
    return MenuEntry::item(title, [library, targets, folder] { library->bring(targets.paths(), folder); });
}

MenuEntry otherFolder(Library* library, const Location& near, const PathSet& targets) {
    return MenuEntry::item(QStringLiteral("Other Folder…"), [library = QPointer(library), near, targets] {
        Actions::chooseFolder(QStringLiteral("Move Here"), near.parent(),
                              [library, targets](const std::optional<Location>& folder) {
                                  if (library && folder)
                                      library->bring(targets.paths(), *folder);
                              });
    });
}

MenuEntry newFolderHere(Library* library, const Page& page, const Location& near, const PathSet& targets) {
    const auto make = [library = QPointer(library), near, targets](const QString& name) {
        if (!library)
            return;
        if (const auto folder = library->newFolderIn(near.parent(), name))
            library->bring(targets.paths(), *folder);
    };
    return MenuEntry::item(QStringLiteral("New Folder Here…"), [page, make] {
        page.ask(NamePrompt::request(QStringLiteral("New Folder"), QStringLiteral("untitled folder"), make));
    });
}

} // namespace

MenuEntry move(Library* library, const Page& page, const Location& near, const PathSet& targets) {
    const QList<MenuEntry> anywhere{otherFolder(library, near, targets), newFolderHere(library, page, near, targets)};
    const QString title = QStringLiteral("Move To");
    const auto project = library->projectContaining(near);
    if (!project)
        return MenuEntry::submenu(title, anywhere);
    const auto with = [library, project = *project, targets, anywhere](const QList<Location>& folders) {
        QList<MenuEntry> entries{bringTo(library, project.name, targets, project.url)};
        for (const Location& folder : folders)
            entries += bringTo(library, QStringLiteral("   ") + folder.name(), targets, folder);
        return entries + QList{MenuEntry::divider()} + anywhere;
    };
    const auto list = [url = project->url, with](QObject* context, const MenuEntry::Ready& ready) {
        Tasks::run(Tasks::Pool::userInitiated, [url] {
            return Scanner::list(url).folders;
        }).then(context, [with, ready](const QList<Location>& folders) { ready(with(folders)); });
    };
    return MenuEntry::submenu(title, with({}), list);
}

QList<MenuEntry> asset(Library* library, const Page& page, const Location& url, const PathSet& targets) {
    const bool allStarred = areAllStarred(library, targets);
    QList<MenuEntry> entries{
        MenuEntry::item(QStringLiteral("Play"), [page] { page.play(); }),
        MenuEntry::item(allStarred ? QStringLiteral("Unstar") : QStringLiteral("Star"),
                        [library, targets] { library->toggleStar(targets.paths()); }),
        MenuEntry::item(QStringLiteral("Open"), [targets] { Actions::open(targets.paths()); }),
        showInFinder(targets),
    };
    if (!library->place().is(Place::Case::folder))
        entries += goToFolder(library, url);
    entries += MenuEntry::divider();
    entries += MenuEntry::item(QStringLiteral("Copy"), [library, targets] { Actions::copy(targets.paths(), library); });
    entries += copyPaths(targets);
    entries += MenuEntry::item(QStringLiteral("Export…"),
                               [library, targets] { Actions::exportFiles(targets.paths(), library); });
    entries += move(library, page, url, targets);
    entries += MenuEntry::divider();
    if (targets.size() == 1)
        entries += MenuEntry::item(QStringLiteral("Rename…"),
                                   [page, target = targets.paths().first()] { page.rename(target); });
    entries += MenuEntry::item(QStringLiteral("Move to Trash"), [page, targets] {
                   page.trash(targets.paths());
               }).thatDestroys();
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
