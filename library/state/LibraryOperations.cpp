// The operations of Library that change what it remembers: pins, hidden projects, colours, groups. Each builds a new
// state and assigns it once, which saves it and raises `revision`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Library.h"

#include <algorithm>

namespace lumbra {

template <typename Change>
void Library::changeState(Change change) {
    LibraryState next = m_state;
    change(next);
    setState(next);
}

namespace {

QString trimmedSlashes(QString path) {
    while (path.startsWith(u'/'))
        path.remove(0, 1);
    while (path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace

std::optional<QString> Library::relativePath(const Location& location) const {
    const auto& known = m_projects.value();
    const bool usable = location.isAtOrBelow(m_root) || std::ranges::any_of(known, [&](const Project& project) {
                            return location.isAtOrBelow(project.url);
                        });
    const Location path = usable ? location : location.canonical();
    if (path == m_root)
        return std::nullopt;
    if (path.isAtOrBelow(m_root))
        return trimmedSlashes(path.toString().mid(m_root.toString().size()));
    const auto project =
        std::ranges::find_if(known, [&](const Project& candidate) { return path.isInside(candidate.url); });
    if (project == known.end())
        return std::nullopt;
    const QString rest = trimmedSlashes(path.toString().mid(project->url.toString().size()));
    return rest.isEmpty() ? project->name : project->name + u'/' + rest;
}

Location Library::urlForRelative(const QString& path) const {
    const QString trimmed = trimmedSlashes(path);
    const QString first = trimmed.section(u'/', 0, 0);
    const QString rest = trimmedSlashes(trimmed.mid(first.size()));
    const auto& known = m_projects.value();
    const auto project = std::ranges::find(known, first, &Project::name);
    if (project == known.end())
        return m_root.child(QStringView(path));
    return rest.isEmpty() ? project->url : project->url.child(QStringView(rest));
}

QList<Location> Library::pinnedURLs() const {
    QList<Location> pinned;
    for (const QString& pin : m_state.pins)
        if (const Location url = urlForRelative(pin); url.exists())
            pinned.append(url);
    return pinned;
}

void Library::togglePin(const Location& location) {
    const auto path = relativePath(location);
    if (!path)
        return;
    changeState([&](LibraryState& state) {
        if (!state.pins.removeAll(*path))
            state.pins.append(*path);
    });
}

void Library::hide(const Project& project) {
    if (!m_state.hidden.contains(project.name))
        changeState([&](LibraryState& state) { state.hidden.append(project.name); });
    if (const auto folder = place().folderUrl(); folder && folder->isInside(project.url))
        setPlace(Place::recent());
}

void Library::unhide(const Project& project) {
    changeState([&](LibraryState& state) { state.hidden.removeAll(project.name); });
}

void Library::setHue(int index, const QString& name) {
    changeState([&](LibraryState& state) {
        const auto group = std::ranges::find_if(
            state.groups, [&](const ProjectGroup& candidate) { return candidate.projects.contains(name); });
        if (group != state.groups.end())
            group->color = index;
        else
            state.colors[name] = index;
    });
}

int Library::hueFor(const QString& name) const {
    if (const auto group = groupContaining(name))
        return groupHue(*group);
    const auto chosen = m_state.colors.constFind(name);
    return chosen != m_state.colors.cend() ? *chosen : Hue::indexFor(name);
}

int Library::groupHue(const ProjectGroup& group) const {
    if (group.color)
        return *group.color;
    const auto chosen = m_state.colors.constFind(group.name);
    return chosen != m_state.colors.cend() ? *chosen : Hue::indexFor(group.name);
}

void Library::renameInState(const QString& old, const QString& name) {
    setState(m_state.renaming(old, name));
}

void Library::forgetInState(const QString& name) {
    setState(m_state.forgetting(name));
}

ProjectGroup Library::newGroup(const QString& name, const QStringList& projects) {
    const ProjectGroup group{QUuid::createUuid(), name, projects, std::nullopt, false};
    setState(ProjectGroups::adding(m_state, group));
    return group;
}

void Library::add(const QString& name, const QUuid& groupId) {
    setState(ProjectGroups::moving(m_state, name, groupId));
}

void Library::removeFromGroup(const QString& name) {
    setState(ProjectGroups::removing(m_state, name));
}

void Library::renameGroup(const QUuid& id, const QString& name) {
    changeState([&](LibraryState& state) {
        for (ProjectGroup& group : state.groups)
            if (group.id == id)
                group.name = name;
    });
}

void Library::setGroupHue(const QUuid& id, int index) {
    changeState([&](LibraryState& state) {
        for (ProjectGroup& group : state.groups)
            if (group.id == id)
                group.color = index;
    });
}

void Library::ungroup(const QUuid& id) {
    changeState(
        [&](LibraryState& state) { state.groups.removeIf([&](const ProjectGroup& group) { return group.id == id; }); });
}

void Library::toggleCollapsed(const QUuid& id) {
    changeState([&](LibraryState& state) {
        for (ProjectGroup& group : state.groups)
            if (group.id == id)
                group.collapsed = !group.collapsed;
    });
}

std::optional<ProjectGroup> Library::groupContaining(const QString& name) const {
    const auto group = std::ranges::find_if(
        m_state.groups, [&](const ProjectGroup& candidate) { return candidate.projects.contains(name); });
    return group == m_state.groups.end() ? std::nullopt : std::optional(*group);
}

std::optional<ProjectGroup> Library::groupWithId(const QUuid& id) const {
    const auto group = std::ranges::find(m_state.groups, id, &ProjectGroup::id);
    return group == m_state.groups.end() ? std::nullopt : std::optional(*group);
}

std::optional<GroupSuggestion> Library::groupSuggestion() const {
    QStringList names;
    const auto visible = visibleProjects();
    for (const Project& project : visible)
        names.append(project.name);
    return ProjectGroups::suggestion(m_state, names);
}

void Library::dismiss(const GroupSuggestion& suggestion) {
    changeState([&](LibraryState& state) { state.dismissed.append(suggestion.prefix); });
}

} // namespace lumbra
