// Groups of projects as pure functions over LibraryState: a project stands in at most one group, and no group is empty
// after a change that took something out of it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "state/LibraryState.h"

namespace lumbra {

// Sibling projects that share their first word. Computed, never stored.
struct GroupSuggestion {
    QString prefix;       // the shared first word, lower-cased
    QStringList projects; // names, sorted

    friend bool operator==(const GroupSuggestion&, const GroupSuggestion&) = default;
};

namespace ProjectGroups {

// Splits a project's name at "-", "_", " " and ".", dropping empty pieces.
QStringList pieces(const QString& name);

LibraryState adding(LibraryState state, const ProjectGroup& group);
LibraryState moving(LibraryState state, const QString& name, const QUuid& groupId);
LibraryState removing(LibraryState state, const QString& name);

// The best suggestion among the visible projects that stand in no group, in any order of names.
std::optional<GroupSuggestion> suggestion(const LibraryState& state, const QStringList& visibleNames);

} // namespace ProjectGroups
} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::GroupSuggestion)
