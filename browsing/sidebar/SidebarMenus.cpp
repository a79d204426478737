// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarMenus.h"

#include "library/Actions.h"
#include "platform/Desktop.h"

#include <QPointer>

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
    return MenuEntry::item(QStringLiteral("Copy Path"), [url] { Actions::copyPaths({url}); });
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

// Asks for the repository whose media a project is to hold. `chosen` gets none when the user cancels.
void chooseRepository(const QString& name, const std::optional<Location>& start,
                      const std::function<void(std::optional<Location>)>& chosen) {
    Actions::chooseFolder(
        QStringLiteral("Link"), start ? start->parent() : Location::home().child("Projects"), chosen,
        QStringLiteral("Choose the repository for “%1”. Its media stays in the library; the repository only records "
                       "where to find it, in its own git config.")
            .arg(name));
}

MenuEntry linkItem(const QString& title, Library* library, const Project& project) {
    return MenuEntry::item(title, [library, project] {
        chooseRepository(project.name, project.repo, [library, project](const std::optional<Location>& repo) {
            if (repo)
                library->linkProject(project, *repo);
        });
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
        linkItem(QStringLiteral("Change Linked Repository…"), library, project),
        MenuEntry::item(QStringLiteral("Unlink Repository"), [library, project] { library->unlinkProject(project); }),
    };
}

// The switch of the background work, and what can be expected of it.
Entries understandingItems(InsightEngine* insights) {
    const auto toggle = [engine = QPointer(insights)] {
        if (engine)
            engine->setEnabled(!engine->enabled());
    };
    Entries entries{MenuEntry::item(QStringLiteral("Understand Files with Apple Intelligence"), toggle)
                        .withCheckmark(insights->enabled())};
    if (const QString status = insights->aiStatus(); !status.isEmpty())
        entries += MenuEntry::note(status);
    return entries;
}

} // namespace

SidebarMenus::SidebarMenus(Library* library, Ask ask, Confirmation::Ask confirm)
    : m_library(library), m_ask(std::move(ask)), m_confirm(std::move(confirm)) {}

QList<MenuEntry> SidebarMenus::project(const Project& project) const {
    Library* const library = m_library;
    Entries entries{pinItem(project.url), addToGroup(project)};
    if (library->groupContaining(project.name)) {
        entries += MenuEntry::item(QStringLiteral("Remove from Group"),
                                   [library, name = project.name] { library->removeFromGroup(name); });
    }
    entries += MenuEntry::divider();
    entries += newFolder(QStringLiteral("New Folder…"), project.url);
    entries += renameProject(project);
    entries += colorMenu(library->hueFor(project.name),
                         [library, name = project.name](int hue) { library->setHue(hue, name); });
    entries += MenuEntry::divider();
    if (project.repo)
        entries += repositoryItems(library, project);
    else
        entries += linkItem(QStringLiteral("Link to Repository…"), library, project);
    entries += MenuEntry::divider();
    entries += showInFinder(project.url);
    entries += copyPath(project.url);
    entries += MenuEntry::divider();
    entries += MenuEntry::item(QStringLiteral("Hide Project"), [library, project] { library->hide(project); });
    entries += trashProject(project);
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
    Library* const library = m_library;
    const auto trash = [library, url] {
        if (library->place() == Place::folder(url))
            library->setPlace(Place::folder(url.parent()));
        library->trash({url});
    };
    return {
        pinItem(url),
        MenuEntry::divider(),
        newFolder(QStringLiteral("New Folder Inside…"), url),
        MenuEntry::item(QStringLiteral("Add Files…"), [library, url] { Actions::importFiles(url, library); }),
        renameFolder(url),
        MenuEntry::divider(),
        showInFinder(url),
        copyPath(url),
        MenuEntry::divider(),
        MenuEntry::item(QStringLiteral("Move to Trash"), trash).thatDestroys(),
    };
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
    return {newProject(), newGroup({})};
}

QList<MenuEntry> SidebarMenus::options(bool byActivity, const std::function<void(bool)>& sortByActivity,
                                       InsightEngine* insights) const {
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
    if (insights) {
        entries += MenuEntry::divider();
        entries += understandingItems(insights);
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

MenuEntry SidebarMenus::newProject() const {
    return MenuEntry::item(QStringLiteral("New Project…"), [library = m_library, ask = m_ask] {
        const auto make = [library](const QString& name) {
            chooseRepository(name, std::nullopt, [library, name](const std::optional<Location>& repo) {
                library->newProjectNamed(name, repo);
            });
        };
        ask(NamePrompt::request(QStringLiteral("New Project"), QString(), make));
    });
}

MenuEntry SidebarMenus::newFolder(const QString& title, const Location& parent) const {
    return MenuEntry::item(title, [library = m_library, ask = m_ask, parent] {
        const auto make = [library, parent](const QString& name) {
            if (const auto made = library->newFolderIn(parent, name))
                library->setPlace(Place::folder(*made));
        };
        ask(NamePrompt::request(QStringLiteral("New Folder"), QStringLiteral("untitled folder"), make));
    });
}

MenuEntry SidebarMenus::renameProject(const Project& project) const {
    return MenuEntry::item(QStringLiteral("Rename Project…"), [library = m_library, ask = m_ask, project] {
        ask(NamePrompt::request(QStringLiteral("Rename Project"), project.name,
                                [library, project](const QString& name) { library->renameProject(project, name); }));
    });
}

MenuEntry SidebarMenus::renameFolder(const Location& url) const {
    return MenuEntry::item(QStringLiteral("Rename Folder…"), [library = m_library, ask = m_ask, url] {
        const auto rename = [library, url](const QString& name) {
            const auto renamed = library->rename(url, name);
            if (renamed && library->place() == Place::folder(url))
                library->setPlace(Place::folder(*renamed));
        };
        ask(NamePrompt::request(QStringLiteral("Rename Folder"), url.name(), rename));
    });
}

MenuEntry SidebarMenus::trashProject(const Project& project) const {
    return MenuEntry::item(QStringLiteral("Move Project to Trash…"), [library = m_library, confirm = m_confirm,
                                                                      project] {
        confirm(
            {.title = QStringLiteral("Move “%1” to the Trash?").arg(project.name),
             .text = QStringLiteral("Everything in this project's folder goes to the Trash. You can put it back from "
                                    "there. To keep the files and just stop seeing the project, use Hide Project "
                                    "instead."),
             .confirm = QStringLiteral("Move to Trash"),
             .action = [library, project] { library->trashProject(project); }});
    });
}

} // namespace lumbra
