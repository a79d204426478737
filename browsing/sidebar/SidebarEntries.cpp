// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarEntries.h"

#include "platform/NaturalOrder.h"

#include <QSet>

#include <algorithm>

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
    QHash<QString, Project> byName;
    for (const Project& project : facts.visible)
        byName.insert(project.name, project);

    QList<Candidate> candidates;
    for (const ProjectGroup& group : facts.groups) {
        GroupEntry entry{group, {}};
        Date latest = Date::distantPast();
        bool kept = matches(group.name, facts.filter);
        for (const QString& name : group.projects) {
            const auto member = byName.constFind(name);
            if (member == byName.constEnd())
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
        grouped.unite(QSet<QString>(group.projects.cbegin(), group.projects.cend()));

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
    if (facts.order == Order::activity) {
        std::stable_sort(candidates.begin(), candidates.end(),
                         [](const Candidate& a, const Candidate& b) { return a.date > b.date; });
    } else {
        NaturalOrder::shared().sort(candidates, [](const Candidate& candidate) { return candidate.name; });
    }

    QList<SidebarEntry> entries;
    entries.reserve(candidates.size());
    for (Candidate& candidate : candidates)
        entries.append(std::move(candidate.entry));
    return entries;
}

bool matches(const QString& name, const QString& filter) {
    return filter.isEmpty()
           || name.normalized(QString::NormalizationForm_C)
                  .contains(filter.normalized(QString::NormalizationForm_C), Qt::CaseInsensitive);
}

} // namespace lumbra::SidebarEntries
