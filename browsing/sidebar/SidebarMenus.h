// What stands in the menus of the sidebar, in which order, and what each item does.
//
// A menu is made anew each time it opens, from what the library holds then; its items may be run after the library has
// changed. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/Confirmation.h"
#include "browsing/MenuEntry.h"
#include "browsing/NamePrompt.h"
#include "library/Library.h"
#include "understanding/InsightEngine.h"

namespace lumbra {

class SidebarMenus {
public:
    using Ask = std::function<void(const NamePrompt&)>;

    // The library must outlive this and every menu made by it. `ask` shows the window's sheet for a name, `confirm` its
    // alert before something is destroyed.
    SidebarMenus(Library* library, Ask ask, Confirmation::Ask confirm);

    QList<MenuEntry> project(const Project& project) const;
    QList<MenuEntry> group(const ProjectGroup& group) const;
    QList<MenuEntry> folder(const Location& url) const;
    QList<MenuEntry> pinned(const Location& url) const;

    // Behind the plus of the projects' header.
    QList<MenuEntry> newItems() const;

    // Behind the gear. `sortByActivity` takes the choice of order; without the understanding of files its switch is
    // left out.
    QList<MenuEntry> options(bool byActivity, const std::function<void(bool)>& sortByActivity,
                             InsightEngine* insights = nullptr) const;

private:
    MenuEntry pinItem(const Location& url) const;
    MenuEntry addToGroup(const Project& project) const;
    MenuEntry newGroup(const QStringList& projects) const;
    MenuEntry newProject() const;
    MenuEntry newFolder(const QString& title, const Location& parent) const;
    MenuEntry renameProject(const Project& project) const;
    MenuEntry renameFolder(const Location& url) const;
    MenuEntry trashProject(const Project& project) const;

    Library* m_library;
    Ask m_ask;
    Confirmation::Ask m_confirm;
};

} // namespace lumbra
