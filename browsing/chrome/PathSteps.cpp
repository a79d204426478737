// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathSteps.h"

#include "browsing/browser/PageText.h"

namespace lumbra {

namespace {

PathStep groupStep(const QUuid& id, const std::optional<ProjectGroup>& group, int hue) {
    const QString name = group ? group->name : QStringLiteral("Group");
    return {name, Place::group(id), name, hue, {}};
}

} // namespace

QString PathStep::id() const {
    return url ? url->toString() : place.groupId() ? place.groupId()->toString() : title;
}

QList<PathStep> pathSteps(const PathFacts& facts) {
    if (const auto id = facts.place.groupId())
        return {groupStep(*id, facts.group, facts.groupHue)};
    const auto url = facts.place.folderUrl();
    if (!url)
        return {};
    if (!facts.project)
        return {{url->name(), facts.place, {}, 0, url}};

    const Project& project = *facts.project;
    QList<PathStep> steps;
    if (facts.group)
        steps.append(groupStep(facts.group->id, facts.group, facts.groupHue));
    steps.append({project.name, Place::folder(project.url), project.name, facts.projectHue, project.url});
    Location folder = project.url;
    for (const QString& component : PageText::componentsBelow(project, *url)) {
        folder = folder.child(QStringView(component));
        steps.append({component, Place::folder(folder), {}, 0, folder});
    }
    return steps;
}

} // namespace lumbra
