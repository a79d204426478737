// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteSearch.h"

#include "platform/Phrases.h"

#include <algorithm>
#include <functional>

namespace lumbra::PaletteSearch {

namespace {

const QString separator = QStringLiteral(" · ");

QString spaced(QString path) {
    return path.replace(u'/', QStringLiteral(" / "));
}

PaletteResult rowOf(const ProjectGroup& group, const Facts& facts) {
    return {.kind = PaletteResult::Kind::project,
            .title = group.name,
            .subtitle = QStringLiteral("Group · %1 projects").arg(group.projects.size()),
            .place = Place::group(group.id),
            .badge = PaletteResult::Badge{group.name, facts.hueOfGroup(group)}};
}

QString about(const Project& project, const Facts& facts) {
    for (const ProjectGroup& group : facts.groups)
        if (group.projects.contains(project.name))
            return QStringLiteral("in ") + group.name;
    return project.repo ? QStringLiteral("linked to ") + project.repo->abbreviated() : QStringLiteral("Project");
}

PaletteResult rowOf(const Project& project, const Facts& facts) {
    return {.kind = PaletteResult::Kind::project,
            .title = project.name,
            .subtitle = about(project, facts),
            .place = Place::folder(project.url),
            .badge = PaletteResult::Badge{project.name, facts.hueOfProject(project)}};
}

} // namespace

QList<PaletteResult> projects(const PaletteQuery& query, const Facts& facts) {
    constexpr int forGroups = 5;
    struct Hit {
        int rank;
        const ProjectGroup* group;
        const Project* project;
    };
    std::vector<Hit> hits;
    for (const ProjectGroup& group : facts.groups)
        if (const auto score = query.score(group.name))
            hits.push_back({*score + forGroups, &group, nullptr});
    for (const Project& project : facts.projects)
        if (const auto score = query.score(project.name))
            hits.push_back({*score, nullptr, &project});
    std::ranges::stable_sort(hits, std::greater(), &Hit::rank);
    hits.resize(std::min(hits.size(), size_t(query.isEmpty() ? mostProjectsUnasked : mostProjects)));

    QList<PaletteResult> rows;
    for (const Hit& hit : hits)
        rows.append(hit.group ? rowOf(*hit.group, facts) : rowOf(*hit.project, facts));
    return rows;
}

PaletteResult folder(const PaletteCatalog::Folder& folder, qsizetype items) {
    return {.kind = PaletteResult::Kind::folder,
            .title = folder.url.name(),
            .subtitle = spaced(folder.text) + separator + QStringLiteral("%1 items").arg(items),
            .place = Place::folder(folder.url),
            .symbol = QStringLiteral("folder.fill")};
}

PaletteResult file(const Asset& asset, const std::optional<Project>& project, const QString& about, Date now) {
    QStringList parts{about, project ? spaced(PaletteCatalog::textFor(*project, asset.url.parent())) : QString(),
                      Phrases::relativeTime(asset.modified, now)};
    parts.removeAll(QString());
    return {.kind = PaletteResult::Kind::file,
            .title = asset.url.name(),
            .subtitle = parts.join(separator),
            .asset = asset};
}

QList<PaletteResult> actions(const PaletteQuery& query, const Facts& facts, const Actions& actions) {
    using Kind = PaletteResult::Kind;
    const QList<PaletteResult> candidates{
        {.kind = Kind::action,
         .title = QStringLiteral("Go to Recent"),
         .subtitle = QStringLiteral("Newest across every project"),
         .symbol = QStringLiteral("clock"),
         .run = actions.goToRecent},
        {.kind = Kind::action,
         .title = QStringLiteral("Go to Starred"),
         .subtitle = QStringLiteral("%1 kept").arg(facts.starred),
         .symbol = QStringLiteral("star.fill"),
         .run = actions.goToStarred},
        {.kind = Kind::action,
         .title = QStringLiteral("Show the library in Finder"),
         .subtitle = facts.root.abbreviated(),
         .symbol = QStringLiteral("archivebox"),
         .run = actions.showLibrary},
    };
    QList<PaletteResult> rows;
    std::ranges::copy_if(candidates, std::back_inserter(rows),
                         [&](const PaletteResult& action) { return query.score(action.title).has_value(); });
    return rows;
}

QList<PaletteResult> numbered(QList<PaletteResult> rows) {
    for (qsizetype row = 0; row < rows.size(); ++row) {
        rows[row].index = row;
        if (row == 0 || rows[row - 1].kind != rows[row].kind)
            rows[row].section = PaletteResult::sectionTitle(rows[row].kind);
    }
    return rows;
}

QString emptyText(const QString& typed) {
    return typed.isEmpty() ? QStringLiteral("Start typing.")
                           : QStringLiteral("Nothing matches “") + typed + QStringLiteral("”.");
}

} // namespace lumbra::PaletteSearch
