// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomOrder.h"

#include <algorithm>

namespace lumbra {

void RoomOrder::setAssets(const Assets& assets) {
    if (assets == m_assets)
        return;
    const bool countChanges = assets.size() != m_assets.size();
    beginResetModel();
    m_assets = assets;
    m_current = -1;
    endResetModel();
    if (countChanges)
        Q_EMIT countChanged();
}

void RoomOrder::setIndex(const AssetIndex& index) {
    m_index = index;
    // Views ask again only for the rows that they show.
    if (!m_assets.isEmpty())
        Q_EMIT dataChanged(this->index(0), this->index(count() - 1), {assetRole, starredRole});
}

void RoomOrder::setCurrent(int row) {
    const int before = std::exchange(m_current, row);
    if (before == row)
        return;
    for (const int changed : {before, row})
        if (changed >= 0)
            Q_EMIT dataChanged(index(changed), index(changed), {playingRole});
}

int RoomOrder::rowOf(const Location& path) const {
    // Mostly the neighbour of the current one.
    for (const int near : {m_current, m_current + 1, m_current - 1})
        if (near >= 0 && near < count() && m_assets.at(near).url == path)
            return near;
    const auto found = std::ranges::find(m_assets, path, &Asset::url);
    return found == m_assets.end() ? -1 : int(found - m_assets.begin());
}

Asset RoomOrder::assetAt(int row) const {
    const Asset& given = m_assets.at(row);
    return m_index.find(given.url).value_or(given);
}

QVariant RoomOrder::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Asset& given = m_assets.at(index.row());
    switch (role) {
    case assetRole:
        return QVariant::fromValue(assetAt(index.row()));
    case pathRole:
        return QVariant::fromValue(given.url);
    case nameRole:
        return given.url.name();
    case kindRole:
        return rawValue(given.kind);
    case starredRole:
        return assetAt(index.row()).isStarred();
    case playingRole:
        return index.row() == m_current;
    default:
        return {};
    }
}

QHash<int, QByteArray> RoomOrder::roleNames() const {
    return {{assetRole, "asset"}, {pathRole, "path"},       {nameRole, "name"},
            {kindRole, "kind"},   {starredRole, "starred"}, {playingRole, "playing"}};
}

} // namespace lumbra
