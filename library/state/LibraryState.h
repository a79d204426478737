// What the library remembers beyond the files themselves: pins, groups, hidden projects, colours, dismissed
// suggestions. A plain value; StateStore keeps it on disk, next to the files, so that it travels with the folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace lumbra {

// Several projects gathered under one name. Nothing on disk but this record.
struct ProjectGroup {
    QUuid id; // fixed at creation
    QString name;
    QStringList projects;     // names, in the order of adding
    std::optional<int> color; // a hue index; absent means that the name decides
    bool collapsed = false;   // the sidebar shows the group closed

    friend bool operator==(const ProjectGroup&, const ProjectGroup&) = default;
};

struct LibraryState {
    QStringList pins;                         // relative paths, in the order of pinning
    QList<ProjectGroup> groups;               // in sidebar order
    QStringList hidden;                       // names of projects
    QMap<QString, int> colors;                // hue index by project or group name
    QStringList dismissed;                    // group suggestions, by prefix
    std::optional<QStringList> tidyDismissed; // tidy suggestions, by id

    // Absent unless every required key is there with the right type: a broken file fails as a whole.
    static std::optional<LibraryState> fromJson(const QJsonObject& object);
    QJsonObject toJson() const;

    // The state after a project got a new name: its pins, groups, hidden mark and colour follow.
    LibraryState renaming(const QString& old, const QString& name) const;

    // The state without a project: its pins, its place in groups (and groups left empty), hidden mark and colour go.
    LibraryState forgetting(const QString& name) const;

    friend bool operator==(const LibraryState&, const LibraryState&) = default;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::LibraryState)
