// What the palette shows for a query: which groups, projects and actions answer it, in which order and how many of
// each, and the words of every row.
//
// Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PaletteCatalog.h"
#include "PaletteQuery.h"
#include "PaletteResult.h"
#include "library/state/LibraryState.h"

namespace lumbra::PaletteSearch {

inline constexpr qsizetype mostProjectsUnasked = 5; // with an empty query
inline constexpr qsizetype mostProjects = 6;
inline constexpr qsizetype mostFolders = 6;
inline constexpr qsizetype mostNamedFiles = 6;
inline constexpr qsizetype mostFiles = 8;  // with those found by their content
inline constexpr int mostContentHits = 12; // asked of the insight store

struct Facts {
    QList<ProjectGroup> groups; // in their stored order
    QList<Project> projects;    // the visible ones, in the library's order
    std::function<int(const ProjectGroup&)> hueOfGroup;
    std::function<int(const Project&)> hueOfProject;
    qsizetype starred = 0;
    Location root;
};

struct Actions {
    std::function<void()> goToRecent = {};
    std::function<void()> goToStarred = {};
    std::function<void()> showLibrary = {};
};

// Groups and projects, the best first.
QList<PaletteResult> projects(const PaletteQuery& query, const Facts& facts);

PaletteResult folder(const PaletteCatalog::Folder& folder, qsizetype items);

// `project` is the one that contains the file, and `about` what the file is understood to be, empty for none.
PaletteResult file(const Asset& asset, const std::optional<Project>& project, const QString& about, Date now);

QList<PaletteResult> actions(const PaletteQuery& query, const Facts& facts, const Actions& actions);

// All rows, which are to come by kind, with their numbers and the titles of their sections.
QList<PaletteResult> numbered(QList<PaletteResult> rows);

// What stands in place of the rows where there are none; the query is as it was typed.
QString emptyText(const QString& typed);

} // namespace lumbra::PaletteSearch
