// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarRules.h"

#include "library/ProjectGroups.h"

#include <QTextBoundaryFinder>

namespace lumbra::SidebarRules {

namespace {

const QString projectPrefix = QStringLiteral("lumbra-project:");

int ownHue(const LibraryState& state, const QString& name) {
    const auto chosen = state.colors.constFind(name);
    return chosen != state.colors.cend() ? *chosen : Hue::indexFor(name);
}

} // namespace

QString newBadge(qsizetype count) {
    if (count < 1)
        return {};
    return count < 100 ? QString::number(count) : QStringLiteral("99+");
}

bool isFresh(const std::optional<Date>& lastActivity, Date now) {
    return lastActivity && now - *lastActivity < freshFor;
}

QSet<Location> openedBy(const Location& folder, const Location& root, const std::optional<Location>& project) {
    QSet<Location> opened;
    for (Location step = folder; step.path().size() > root.path().size(); step = step.parent())
        opened.insert(step);
    if (project)
        opened.insert(*project);
    return opened;
}

QString groupNameFor(const QString& target, const QString& dropped) {
    const QStringList pieces = ProjectGroups::pieces(target);
    if (pieces.isEmpty() || !dropped.toLower().startsWith(pieces.first().toLower()))
        return QStringLiteral("New Group");
    return capitalized(pieces.first());
}

QString capitalized(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    const qsizetype first = finder.toNextBoundary();
    return first < 0 ? text : text.left(first).toUpper() + text.mid(first);
}

QString dragPayload(const QString& projectName) {
    return projectPrefix + projectName;
}

std::optional<QString> projectNameIn(const QString& payload) {
    if (!payload.startsWith(projectPrefix))
        return std::nullopt;
    return payload.mid(projectPrefix.size());
}

QHash<QString, int> hues(const LibraryState& state, const QList<Project>& projects) {
    QHash<QString, int> found;
    found.reserve(projects.size());
    for (const ProjectGroup& group : state.groups) {
        const int hue = groupHue(state, group);
        for (const QString& name : group.projects) {
            if (!found.contains(name))
                found.insert(name, hue);
        }
    }
    for (const Project& project : projects) {
        if (!found.contains(project.name))
            found.insert(project.name, ownHue(state, project.name));
    }
    return found;
}

int groupHue(const LibraryState& state, const ProjectGroup& group) {
    return group.color.value_or(ownHue(state, group.name));
}

SidebarFooter footer(const FooterFacts& facts) {
    if (facts.indexing)
        return {.busy = true, .text = QStringLiteral("Indexing…")};
    if (facts.paused)
        return {.symbol = QStringLiteral("pause.circle"), .text = *facts.paused};
    if (facts.done < facts.planned)
        return {.share = double(facts.done) / facts.planned,
                .text = QStringLiteral("Understanding %1 of %2").arg(facts.done).arg(facts.planned),
                .detail = facts.current ? QStringLiteral("Looking at ") + *facts.current : QString()};
    return {.symbol = QStringLiteral("folder"),
            .text = facts.root.abbreviated(),
            .tail = QStringLiteral(" \u00b7 %1 projects").arg(facts.projects)};
}

} // namespace lumbra::SidebarRules
