// SPDX-License-Identifier: GPL-3.0-or-later
#include "GroupCards.h"

namespace lumbra {

GroupCards::GroupCards(Library* library, QObject* parent) : QAbstractListModel(parent), m_library(library) {
    connect(library, &Library::placeChanged, this, &GroupCards::refresh);
    connect(library, &Library::projectsChanged, this, &GroupCards::refresh);
    connect(library, &Library::stateChanged, this, &GroupCards::refresh);
    connect(library, &Library::derivedChanged, this, &GroupCards::refresh);
    refresh();
}

QString GroupCards::subtitle(const FolderStats& stats, const std::optional<Location>& repo) {
    const QString items = QStringLiteral("%1 items").arg(stats.count);
    return repo ? items + QStringLiteral(" · linked to ") + repo->abbreviated() : items;
}

QList<GroupCards::Card> GroupCards::cards() const {
    const auto id = m_library->place().groupId();
    const auto group = id ? m_library->groupWithId(*id) : std::nullopt;
    if (!group)
        return {};
    const QList<Project> visible = m_library->visibleProjects();
    QList<Card> cards;
    for (const QString& name : group->projects) {
        const auto project =
            std::find_if(visible.begin(), visible.end(), [&](const Project& p) { return p.name == name; });
        if (project == visible.end())
            continue;
        const FolderStats stats = m_library->statsFor(project->url);
        cards.append({project->url, name, m_library->hueFor(name), subtitle(stats, project->repo), stats.newest});
    }
    return cards;
}

void GroupCards::refresh() {
    const QList<Card> next = cards();
    const bool sameProjects = std::equal(next.begin(), next.end(), m_cards.begin(), m_cards.end(),
                                         [](const Card& a, const Card& b) { return a.url == b.url; });
    if (!sameProjects) {
        beginResetModel();
        m_cards = next;
        endResetModel();
        return;
    }
    for (qsizetype row = 0; row < next.size(); ++row) {
        if (m_cards.at(row) == next.at(row))
            continue;
        m_cards[row] = next.at(row);
        Q_EMIT dataChanged(index(int(row)), index(int(row)));
    }
}

int GroupCards::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_cards.size());
}

QVariant GroupCards::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const Card& card = m_cards.at(index.row());
    switch (role) {
    case urlRole:
        return QVariant::fromValue(card.url);
    case nameRole:
        return card.name;
    case hueRole:
        return card.hue;
    case subtitleRole:
        return card.subtitle;
    case newestRole: {
        QVariantList newest;
        for (const Asset& asset : card.newest)
            newest.append(QVariant::fromValue(asset));
        return newest;
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> GroupCards::roleNames() const {
    return {{urlRole, "url"}, {nameRole, "name"}, {hueRole, "hue"}, {subtitleRole, "subtitle"}, {newestRole, "newest"}};
}

} // namespace lumbra
