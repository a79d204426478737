// The way to a place as steps: its group, its project, and each folder below it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "library/state/LibraryState.h"

#include <QObject>

namespace lumbra {

class PathStep {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString badge MEMBER badge)
    Q_PROPERTY(int hue MEMBER hue)
    Q_PROPERTY(bool isFolder READ isFolder)

public:
    QString title;
    Place place;                 // where a click goes
    QString badge;               // the name on its badge, or empty for none
    int hue = 0;                 // of the badge
    std::optional<Location> url; // of a step that is a real folder

    bool isFolder() const { return url.has_value(); }

    // Tells steps apart in a list.
    QString id() const;

    friend bool operator==(const PathStep&, const PathStep&) = default;
};

// What the library says of the place.
struct PathFacts {
    Place place;
    std::optional<Project> project = {};    // that contains the place's folder
    std::optional<ProjectGroup> group = {}; // the place's, or the one that the project stands in
    int projectHue = 0;
    int groupHue = 0;
};

// Empty for a place that is neither a folder nor a group.
QList<PathStep> pathSteps(const PathFacts& facts);

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::PathStep)
