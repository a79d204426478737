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
    Q_ENUM(Chevron)

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
    QList<Pin> pins; // in the order of pinning
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
