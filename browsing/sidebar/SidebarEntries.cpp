// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarEntries.h"

#include "platform/NaturalOrder.h"

#include <QSet>

#include <algorithm>
#include <numeric>
#include <vector>

namespace lumbra::SidebarEntries {

namespace {

// An entry with what it is sorted by.
struct Candidate {
    SidebarEntry entry;
    Date date;
    QString name;
};

Date activityOf(const Project& project, const Facts& facts) {
    return facts.activity.value(project.url, Date::distantPast());
}

QList<Candidate> groupCandidates(const Facts& facts) {
    QHash<QString, const Project*> byName;
    byName.reserve(facts.visible.size());
    for (const Project& project : facts.visible)
        byName.insert(project.name, &project);

    QList<Candidate> candidates;
    for (const ProjectGroup& group : facts.groups) {
        GroupEntry entry{group, {}};
        Date latest = Date::distantPast();
        bool kept = matches(group.name, facts.filter);
        for (const QString& name : group.projects) {
            const Project* member = byName.value(name);
            if (!member || entry.members.contains(*member)) // a state written by hand may name one twice
                continue;
            entry.members.append(*member);
            latest = std::max(latest, activityOf(*member, facts));
            kept = kept || matches(name, facts.filter);
        }
        if (kept && !entry.members.isEmpty())
            candidates.append({std::move(entry), latest, group.name});
    }
    return candidates;
}

QList<Candidate> looseCandidates(const Facts& facts) {
    QSet<QString> grouped;
    for (const ProjectGroup& group : facts.groups)
        for (const QString& name : group.projects)
            grouped.insert(name);

    QList<Candidate> candidates;
    for (const Project& project : facts.visible) {
        if (!grouped.contains(project.name) && matches(project.name, facts.filter))
            candidates.append({project, activityOf(project, facts), project.name});
    }
    return candidates;
}

} // namespace

QList<SidebarEntry> list(const Facts& facts) {
    // Groups come first, so that the stable sort keeps them ahead of loose projects with the same key.
    QList<Candidate> candidates = groupCandidates(facts) + looseCandidates(facts);
    std::vector<qsizetype> places(size_t(candidates.size()));
    std::iota(places.begin(), places.end(), 0);
    if (facts.order == Order::activity)
        std::ranges::stable_sort(places, std::greater(), [&](qsizetype place) { return candidates.at(place).date; });
    else
        NaturalOrder::shared().sort(places, [&](qsizetype place) { return candidates.at(place).name; });

    QList<SidebarEntry> entries;
    entries.reserve(candidates.size());
    for (const qsizetype place : places)
        entries.append(std::move(candidates[place].entry));
    return entries;
}

bool matches(const QString& name, const QString& filter) {
    return filter.isEmpty()
           || name.normalized(QString::NormalizationForm_C)
                  .contains(filter.normalized(QString::NormalizationForm_C), Qt::CaseInsensitive);
}

} // namespace lumbra::SidebarEntries
