// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarMenus.h"

#include "core/Clipboard.h"
#include "core/ProjectLinks.h"
#include "platform/Desktop.h"
#include "platform/Tasks.h"

namespace lumbra {

namespace {

using Entries = QList<MenuEntry>;

MenuEntry showInFinder(const QString& title, const Location& url) {
    return MenuEntry::item(title, [url] { Desktop::reveal({url}); });
}

MenuEntry showInFinder(const Location& url) {
    return showInFinder(QStringLiteral("Show in Finder"), url);
}

MenuEntry copyPath(const Location& url) {
    return MenuEntry::item(QStringLiteral("Copy Path"), [url] { Clipboard::copyText(url.toString()); });
}

MenuEntry colorMenu(int current, const std::function<void(int)>& pick) {
    Entries hues;
    for (int index = 0; index < int(Hue::all.size()); ++index) {
        const QString name = QStringView(Hue::all[size_t(index)].name).toString();
        hues.append(
            MenuEntry::item(name, [pick, index] { pick(index); }).withHue(index).withCheckmark(index == current));
    }
    return MenuEntry::submenu(QStringLiteral("Color"), hues);
}

// git is asked for it, which may take its time.
void unlink(Library* library, const Location& folder) {
    Tasks::run(Tasks::Pool::userInitiated, [folder] { ProjectLinks::unlink(folder); }).then(library, [library] {
        library->reloadProjects();
    });
}

// Of a project that is linked to one.
Entries repositoryItems(Library* library, const Project& project) {
    const Location repo = *project.repo;
    return {
        showInFinder(QStringLiteral("Show Repository in Finder"), repo),
        MenuEntry::item(QStringLiteral("Open Repository in Terminal"),
                        [library, repo] {
                            if (!Desktop::openTerminal(repo))
                                library->setLastError(QStringLiteral("No terminal could be started."));
                        }),
        MenuEntry::item(QStringLiteral("Unlink Repository"), [library, url = project.url] { unlink(library, url); }),
    };
}

} // namespace

SidebarMenus::SidebarMenus(Library* library, Ask ask) : m_library(library), m_ask(std::move(ask)) {}

QList<MenuEntry> SidebarMenus::project(const Project& project) const {
    Library* const library = m_library;
    Entries entries{pinItem(project.url), addToGroup(project)};
    if (library->groupContaining(project.name)) {
        entries += MenuEntry::item(QStringLiteral("Remove from Group"),
                                   [library, name = project.name] { library->removeFromGroup(name); });
    }
    entries += MenuEntry::divider();
    entries += colorMenu(library->hueFor(project.name),
                         [library, name = project.name](int hue) { library->setHue(hue, name); });
    entries += MenuEntry::divider();
    if (project.repo) {
        entries += repositoryItems(library, project);
        entries += MenuEntry::divider();
    }
    entries += showInFinder(project.url);
    entries += copyPath(project.url);
    entries += MenuEntry::divider();
    entries += MenuEntry::item(QStringLiteral("Hide Project"), [library, project] { library->hide(project); });
    return entries;
}

QList<MenuEntry> SidebarMenus::group(const ProjectGroup& group) const {
    Library* const library = m_library;
    const auto rename = [library, ask = m_ask, id = group.id, name = group.name] {
        ask(NamePrompt::request(QStringLiteral("Rename Group"), name,
                                [library, id](const QString& to) { library->renameGroup(id, to); }));
    };
    const auto pick = [library, id = group.id](int hue) { library->setGroupHue(id, hue); };
    return {
        MenuEntry::item(QStringLiteral("Rename Group…"), rename),
        colorMenu(library->groupHue(group), pick),
        MenuEntry::item(QStringLiteral("Ungroup"), [library, id = group.id] { library->ungroup(id); }),
    };
}

QList<MenuEntry> SidebarMenus::folder(const Location& url) const {
    return {pinItem(url), MenuEntry::divider(), showInFinder(url), copyPath(url)};
}

QList<MenuEntry> SidebarMenus::pinned(const Location& url) const {
    Library* const library = m_library;
    return {
        MenuEntry::item(QStringLiteral("Unpin"), [library, url] { library->togglePin(url); }),
        showInFinder(url),
        copyPath(url),
    };
}

QList<MenuEntry> SidebarMenus::newItems() const {
    return {newGroup({})};
}

QList<MenuEntry> SidebarMenus::options(bool byActivity, const std::function<void(bool)>& sortByActivity) const {
    Library* const library = m_library;
    Entries entries = newItems();
    entries += MenuEntry::divider();
    entries += MenuEntry::heading(QStringLiteral("Sort Projects"));
    entries += MenuEntry::item(QStringLiteral("By recent activity"), [sortByActivity] {
                   sortByActivity(true);
               }).withCheckmark(byActivity);
    entries += MenuEntry::item(QStringLiteral("By name"), [sortByActivity] {
                   sortByActivity(false);
               }).withCheckmark(!byActivity);
    if (const QList<Project> hidden = library->hiddenProjects(); !hidden.isEmpty()) {
        Entries shown;
        for (const Project& project : hidden) {
            shown += MenuEntry::item(QStringLiteral("Show ") + project.name,
                                     [library, project] { library->unhide(project); });
        }
        entries += MenuEntry::divider();
        entries += MenuEntry::submenu(QStringLiteral("Hidden Projects"), shown);
    }
    entries += MenuEntry::divider();
    entries += showInFinder(QStringLiteral("Show Library in Finder"), library->root());
    return entries;
}

MenuEntry SidebarMenus::pinItem(const Location& url) const {
    Library* const library = m_library;
    const std::optional<QString> key = library->relativePath(url);
    const bool pinned = key && library->state().pins.contains(*key);
    return MenuEntry::item(pinned ? QStringLiteral("Unpin") : QStringLiteral("Pin to Top"),
                           [library, url] { library->togglePin(url); });
}

MenuEntry SidebarMenus::addToGroup(const Project& project) const {
    Library* const library = m_library;
    const std::optional<ProjectGroup> holding = library->groupContaining(project.name);
    Entries entries;
    const QList<ProjectGroup> groups = library->state().groups;
    for (const ProjectGroup& group : groups) {
        entries +=
            MenuEntry::item(group.name, [library, name = project.name, id = group.id] { library->add(name, id); })
                .withHue(library->groupHue(group))
                .disabledIf(holding && holding->id == group.id);
    }
    if (!entries.isEmpty())
        entries += MenuEntry::divider();
    entries += newGroup({project.name});
    return MenuEntry::submenu(QStringLiteral("Add to Group"), entries);
}

MenuEntry SidebarMenus::newGroup(const QStringList& projects) const {
    return MenuEntry::item(QStringLiteral("New Group…"), [library = m_library, ask = m_ask, projects] {
        ask(NamePrompt::request(QStringLiteral("New Group"), QString(),
                                [library, projects](const QString& name) { library->newGroup(name, projects); }));
    });
}

} // namespace lumbra
