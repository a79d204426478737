// The sidebar as a flat list of rows, from what the library and the pane hold.
//
// Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SidebarEntries.h"
#include "library/ProjectGroups.h"

#include <QObject>
#include <QSet>

namespace lumbra {

struct SidebarRow {
    Q_GADGET
    Q_PROPERTY(QString type READ typeName)
    Q_PROPERTY(int depth MEMBER depth)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString badgeName MEMBER badgeName)
    Q_PROPERTY(int hue MEMBER hue)
    Q_PROPERTY(bool expandable READ isExpandable)
    Q_PROPERTY(bool expanded READ isExpanded)
    Q_PROPERTY(bool selected MEMBER selected)
    Q_PROPERTY(bool pinned MEMBER pinned)
    Q_PROPERTY(bool fresh MEMBER fresh)
    Q_PROPERTY(QString count MEMBER count)
    Q_PROPERTY(bool countAccented MEMBER countAccented)
    Q_PROPERTY(QString countHelp MEMBER countHelp)
    Q_PROPERTY(QString help MEMBER help)
    Q_PROPERTY(QString button MEMBER button)
    Q_PROPERTY(bool draggable READ isDraggable)
    Q_PROPERTY(bool hasMenu READ hasMenu)
    Q_PROPERTY(bool takesFiles READ takesFiles)

public:
    enum class Type {
        library,
        pinnedTitle,
        pinned,
        projectsHeader,
        suggestion,
        group,
        project,
        folder,
        noMatch,
    };
    Q_ENUM(Type)

    enum class Chevron {
        none,
        closed,
        open,
    };

    QString id = {}; // the same for the same row, whatever else of it changes
    Type type = Type::library;
    int depth = 0;
    QString title = {};
    QString symbol = {};    // what stands before the title, unless a badge does
    QString badgeName = {}; // whose monogram the badge bears; empty for no badge
    int hue = 0;            // of the badge
    Chevron chevron = Chevron::none;
    bool selected = false;
    bool pinned = false; // bears the pin mark
    bool fresh = false;  // bears the dot
    QString count = {};  // the number at the row's end
    bool countAccented = false;
    QString countHelp = {};
    QString help = {};
    QString button = {};  // of the suggestion
    Place place = {};     // where a click goes
    QString project = {}; // the name, of a project's row

    // True for rows that stand for a place; titles and the like do not.
    bool isChoosable() const;

    bool isDraggable() const { return type == Type::project; }
    bool hasMenu() const { return isChoosable() && type != Type::library; }
    bool takesFiles() const { return type == Type::pinned || type == Type::project || type == Type::folder; }
    bool isExpandable() const { return chevron != Chevron::none; }
    bool isExpanded() const { return chevron == Chevron::open; }
    QString typeName() const; // "project" and so on, for views

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

namespace SidebarRows {

struct Pin {
    Location url;
    std::optional<QString> project; // the name of the one that contains it

    friend bool operator==(const Pin&, const Pin&) = default;
};

struct Facts {
    Place place;
    qsizetype newToday = 0;
    qsizetype starred = 0;
    qsizetype tidy = 0; // suggestions
    QList<Pin> pins;    // in the order of pinning
    std::optional<GroupSuggestion> suggestion;
    QList<SidebarEntry> entries;
    QString filter;
    QHash<Location, Date> activity;              // by project path
    QHash<QString, int> hues;                    // by project name
    QHash<QUuid, int> groupHues;                 // by group
    QSet<Location> open;                         // projects and folders whose rows are open
    QHash<Location, QList<Location>> subfolders; // of each folder that has been listed
    Date now;
};

// Every id is there once.
QList<SidebarRow> list(const Facts& facts);

} // namespace SidebarRows
} // namespace lumbra

// Nothing in it points into it, so that a list of many may move its rows as bytes when some come or go.
Q_DECLARE_TYPEINFO(lumbra::SidebarRow, Q_RELOCATABLE_TYPE);
Q_DECLARE_METATYPE(lumbra::SidebarRow)
