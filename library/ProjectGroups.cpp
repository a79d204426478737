// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProjectGroups.h"

#include <QRegularExpression>
#include <QSet>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumbra::ProjectGroups {

namespace {

constexpr int shortestPrefix = 3;
constexpr qsizetype fewestSiblings = 2;

void takeOut(LibraryState& state, const QString& name) {
    for (ProjectGroup& group : state.groups)
        group.projects.removeAll(name);
}

void dropEmpty(LibraryState& state) {
    state.groups.removeIf([](const ProjectGroup& group) { return group.projects.isEmpty(); });
}

// Counted in characters as people see them.
bool isLongEnough(const QString& word) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, word);
    for (int i = 0; i < shortestPrefix; ++i)
        if (finder.toNextBoundary() < 0)
            return false;
    return true;
}

} // namespace

QStringList pieces(const QString& name) {
    static const QRegularExpression separators(QStringLiteral("[-_ .]"));
    return name.split(separators, Qt::SkipEmptyParts);
}

LibraryState adding(LibraryState state, const ProjectGroup& group) {
    for (const QString& name : group.projects)
        takeOut(state, name);
    dropEmpty(state);
    // Appended after the clean-up: a group may be made empty on purpose.
    state.groups.append(group);
    // A group made from a suggestion, or one with the same word, ends the suggestion of that word.
    state.dismissed.append(group.name.toLower());
    return state;
}

LibraryState moving(LibraryState state, const QString& name, const QUuid& groupId) {
    takeOut(state, name);
    const auto target = std::ranges::find(state.groups, groupId, &ProjectGroup::id);
    if (target != state.groups.end())
        target->projects.append(name);
    dropEmpty(state);
    return state;
}

LibraryState removing(LibraryState state, const QString& name) {
    takeOut(state, name);
    dropEmpty(state);
    return state;
}

std::optional<GroupSuggestion> suggestion(const LibraryState& state, const QStringList& visibleNames) {
    QSet<QString> grouped;
    for (const ProjectGroup& group : state.groups)
        grouped.unite({group.projects.begin(), group.projects.end()});
    QMap<QString, QStringList> byPrefix; // in order of the prefixes, so that the first of the largest wins
    for (const QString& name : visibleNames) {
        const QStringList words = pieces(name.toLower());
        if (!grouped.contains(name) && !words.isEmpty() && isLongEnough(words.first()))
            byPrefix[words.first()].append(name);
    }
    std::optional<GroupSuggestion> best;
    for (auto entry = byPrefix.begin(); entry != byPrefix.end(); ++entry) {
        if (entry->size() < fewestSiblings || state.dismissed.contains(entry.key()))
            continue;
        if (!best || entry->size() > best->projects.size())
            best = GroupSuggestion{entry.key(), *entry};
    }
    if (best)
        best->projects.sort();
    return best;
}

} // namespace lumbra::ProjectGroups
