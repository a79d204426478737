// The project list of the sidebar: which groups and loose projects it has, and in which order.
//
// Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "library/state/LibraryState.h"

#include <QHash>

#include <variant>

namespace lumbra {

// A group with those of its projects that are visible, in the group's own order.
struct GroupEntry {
    ProjectGroup group;
    QList<Project> members;

    friend bool operator==(const GroupEntry&, const GroupEntry&) = default;
};

using SidebarEntry = std::variant<GroupEntry, Project>;

namespace SidebarEntries {

enum class Order {
    activity, // newest first; what never saw activity stands last
    name,
};

struct Facts {
    QList<Project> visible;         // in the library's order
    QList<ProjectGroup> groups;     // in their stored order
    QHash<Location, Date> activity; // by project path
    QString filter;                 // empty for none
    Order order = Order::activity;
};

// A project in a group is never listed beside it, and a group without a visible member is not listed at all. A filter
// keeps a group for its own name or for that of a member, and then keeps all its members.
QList<SidebarEntry> list(const Facts& facts);

// Whether the name contains the filter, whatever the case of its letters and however its accents are composed.
bool matches(const QString& name, const QString& filter);

} // namespace SidebarEntries
} // namespace lumbra
