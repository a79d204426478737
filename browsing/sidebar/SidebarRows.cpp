// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarRows.h"

#include "SidebarRules.h"

#include <QMetaEnum>

namespace lumbra {

bool SidebarRow::isChoosable() const {
    switch (type) {
    case Type::library:
    case Type::pinned:
    case Type::group:
    case Type::project:
    case Type::folder:
        return true;
    case Type::pinnedTitle:
    case Type::projectsHeader:
    case Type::suggestion:
    case Type::noMatch:
        break;
    }
    return false;
}

QString SidebarRow::typeName() const {
    return QString::fromLatin1(QMetaEnum::fromType<Type>().valueToKey(int(type)));
}

namespace SidebarRows {

namespace {

using Type = SidebarRow::Type;
using Chevron = SidebarRow::Chevron;

QString numberOf(qsizetype count) {
    return count > 0 ? QString::number(count) : QString();
}

class Builder {
public:
    explicit Builder(const Facts& facts) : m_facts(facts) {
        for (const Pin& pin : facts.pins)
            m_pinned.insert(pin.url);
        m_ids.reserve(facts.hues.size());
        m_rows.reserve(facts.hues.size());
    }

    QList<SidebarRow> build() {
        addLibraryRows();
        if (m_facts.filter.isEmpty())
            addPins();
        add({.id = QStringLiteral("projects"), .type = Type::projectsHeader, .title = QStringLiteral("Projects")});
        if (m_facts.suggestion && m_facts.filter.isEmpty())
            addSuggestion(*m_facts.suggestion);
        for (const SidebarEntry& entry : m_facts.entries) {
            if (const auto* group = std::get_if<GroupEntry>(&entry))
                addGroup(*group);
            else
                addProject(std::get<Project>(entry), QString(), 0);
        }
        if (m_facts.entries.isEmpty() && !m_facts.filter.isEmpty()) {
            add({.id = QStringLiteral("no match"),
                 .type = Type::noMatch,
                 .title = QStringLiteral("No project matches “%1”").arg(m_facts.filter)});
        }
        return std::move(m_rows);
    }

private:
    // A library state edited by hand may name a pin or a group twice. Rows are told apart by their ids, so the first
    // stands for all.
    bool add(SidebarRow row) {
        if (m_ids.contains(row.id))
            return false;
        m_ids.insert(row.id);
        if (row.isChoosable())
            row.selected = row.place == m_facts.place;
        m_rows.append(std::move(row));
        return true;
    }

    void addLibraryRows() {
        const QString badge = SidebarRules::newBadge(m_facts.newToday);
        add({.id = QStringLiteral("recent"),
             .title = QStringLiteral("Recent"),
             .symbol = QStringLiteral("clock"),
             .count = badge,
             .countAccented = true,
             .countHelp = badge.isEmpty() ? QString() : QStringLiteral("%1 new in the last day").arg(m_facts.newToday),
             .place = Place::recent()});
        add({.id = QStringLiteral("starred"),
             .title = QStringLiteral("Starred"),
             .symbol = QStringLiteral("star.fill"),
             .count = numberOf(m_facts.starred),
             .place = Place::starred()});
        add({.id = QStringLiteral("tidy"),
             .title = QStringLiteral("Tidy"),
             .symbol = QStringLiteral("wand.and.stars"),
             .count = numberOf(m_facts.tidy),
             .place = Place::tidy()});
    }

    void addPins() {
        if (m_facts.pins.isEmpty())
            return;
        add({.id = QStringLiteral("pinned"), .type = Type::pinnedTitle, .title = QStringLiteral("Pinned")});
        for (const Pin& pin : m_facts.pins) {
            add({.id = QStringLiteral("pin:") + pin.url.toString(),
                 .type = Type::pinned,
                 .title = pin.url.name(),
                 .symbol = QStringLiteral("folder"),
                 .badgeName = pin.project.value_or(QString()),
                 .hue = pin.project ? m_facts.hues.value(*pin.project) : 0,
                 .help = pin.url.abbreviated(),
                 .place = Place::folder(pin.url)});
        }
    }

    void addSuggestion(const GroupSuggestion& suggestion) {
        add({.id = QStringLiteral("suggestion:") + suggestion.prefix,
             .type = Type::suggestion,
             .title = QStringLiteral("%1 projects start with %2. Group them?")
                          .arg(QString::number(suggestion.projects.size()), suggestion.prefix),
             .button = QStringLiteral("Group as %1").arg(SidebarRules::capitalized(suggestion.prefix))});
    }

    void addGroup(const GroupEntry& entry) {
        const ProjectGroup& group = entry.group;
        const bool open = !group.collapsed || !m_facts.filter.isEmpty();
        const QString id = QStringLiteral("group:") + group.id.toString(QUuid::WithoutBraces);
        const bool added = add({.id = id,
                                .type = Type::group,
                                .title = group.name,
                                .badgeName = group.name,
                                .hue = m_facts.groupHues.value(group.id),
                                // What is stored, also while a filter shows every member: a click changes that.
                                .chevron = group.collapsed ? Chevron::closed : Chevron::open,
                                .count = QString::number(entry.members.size()),
                                .place = Place::group(group.id)});
        if (!added || !open)
            return;
        for (const Project& member : entry.members)
            addProject(member, id + u'/', 1);
    }

    void addProject(const Project& project, const QString& idPrefix, int depth) {
        const bool open = m_facts.open.contains(project.url);
        const auto activity = m_facts.activity.constFind(project.url);
        const std::optional<Date> last =
            activity == m_facts.activity.constEnd() ? std::nullopt : std::optional(*activity);
        const QString id = idPrefix + QStringLiteral("project:") + project.name;
        const bool added =
            add({.id = id,
                 .type = Type::project,
                 .depth = depth,
                 .title = project.name,
                 .badgeName = project.name,
                 .hue = m_facts.hues.value(project.name),
                 .chevron = open ? Chevron::open : Chevron::closed,
                 .pinned = m_pinned.contains(project.url),
                 .fresh = SidebarRules::isFresh(last, m_facts.now),
                 .help = project.repo ? QStringLiteral("Linked to ") + project.repo->toString() : QString(),
                 .place = Place::folder(project.url),
                 .project = project.name});
        if (added && open)
            addSubfolders(project.url, id, depth + 1);
    }

    void addSubfolders(const Location& parent, const QString& idPrefix, int depth) {
        const QList<Location> folders = m_facts.subfolders.value(parent);
        for (const Location& folder : folders) {
            const auto below = m_facts.subfolders.constFind(folder);
            const bool hasChildren = below != m_facts.subfolders.constEnd() && !below->isEmpty();
            const bool open = m_facts.open.contains(folder);
            const QString id = idPrefix + u'/' + folder.name();
            const bool selected = m_facts.place == Place::folder(folder);
            add({.id = id,
                 .type = Type::folder,
                 .depth = depth,
                 .title = folder.name(),
                 .symbol = selected ? QStringLiteral("folder.fill") : QStringLiteral("folder"),
                 .chevron = !hasChildren ? Chevron::none
                            : open       ? Chevron::open
                                         : Chevron::closed,
                 .pinned = m_pinned.contains(folder),
                 .place = Place::folder(folder)});
            if (open)
                addSubfolders(folder, id, depth + 1);
        }
    }

    const Facts& m_facts;
    QSet<Location> m_pinned;
    QSet<QString> m_ids;
    QList<SidebarRow> m_rows;
};

} // namespace

QList<SidebarRow> list(const Facts& facts) {
    return Builder(facts).build();
}

} // namespace SidebarRows
} // namespace lumbra
