// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecentSections.h"

#include <QHash>

#include <algorithm>

namespace lumbra {

namespace {

constexpr qsizetype singles = 4;

} // namespace

QString identity(const RecentEntry& entry) {
    if (const auto* stack = std::get_if<RecentStack>(&entry))
        return QStringLiteral("stack:") + stack->folder.toString();
    return std::get<Asset>(entry).url.toString();
}

RecentEntry RecentEntries::operator[](qsizetype place) const {
    const Item& item = m_items->items[size_t(place)];
    Asset asset = item.folder->assetAt(item.place);
    if (item.stacked == 0)
        return asset;
    return RecentStack{asset.url.parent(), asset, item.stacked};
}

QList<RecentEntry> RecentEntries::first(qsizetype count) const {
    QList<RecentEntry> entries;
    entries.reserve(count);
    for (qsizetype place = 0; place < count; ++place)
        entries.append((*this)[place]);
    return entries;
}

RecentEntries::Iterator RecentEntries::begin() const {
    return {*this, 0};
}

RecentEntries::Iterator RecentEntries::end() const {
    return {*this, size()};
}

bool RecentEntries::Item::operator==(const Item& other) const {
    if (stacked != other.stacked)
        return false;
    if (folder == other.folder)
        return place == other.place;
    // The folder may have been rebuilt for another file of it.
    return folder->path() == other.folder->path() && folder->at(place) == other.folder->at(other.place);
}

bool operator==(const RecentEntries& a, const RecentEntries& b) {
    if (a.m_items == b.m_items || a.isEmpty() || a.size() != b.size())
        return a.size() == b.size();
    return a.m_items->items == b.m_items->items;
}

void RecentCollector::Newest::add(const Pick& pick) {
    const auto end = picks.begin() + std::min<qsizetype>(count, singles + 1);
    ++count;
    // Only a later date goes ahead: among equals the earlier arrival stays.
    const auto place = std::find_if(picks.begin(), end, [&](const Pick& p) { return p.modified < pick.modified; });
    if (place == picks.end())
        return;
    std::move_backward(place, end == picks.end() ? end - 1 : end, end == picks.end() ? end : end + 1);
    *place = pick;
}

void RecentCollector::add(AssetKind kind, Date modified, qsizetype position, size_t place) {
    m_folder[size_t(kind)].add({modified, position, place});
}

void RecentCollector::endFolder(const AssetIndex::Folder& folder) {
    for (const AssetKind kind : allAssetKinds) {
        Newest& newest = m_folder[size_t(kind)];
        for (qsizetype i = 0; i < std::min(newest.count, singles + 1); ++i) {
            const Pick& pick = newest.picks[size_t(i)];
            const qsizetype stacked = i < singles ? 0 : newest.count - singles;
            m_placed[size_t(kind)].push_back(
                {pick.modified, pick.position, {&folder, quint32(pick.place), quint32(stacked)}});
        }
        m_totals[size_t(kind)] += newest.count;
        newest.count = 0;
    }
}

QList<RecentSection> RecentCollector::sections(const std::shared_ptr<const void>& folders) {
    QList<RecentSection> sections;
    for (const AssetKind kind : allAssetKinds) {
        std::vector<Placed>& placed = m_placed[size_t(kind)];
        if (placed.empty())
            continue;
        std::ranges::sort(placed, [](const Placed& a, const Placed& b) {
            return a.modified != b.modified ? a.modified > b.modified : a.position < b.position;
        });
        auto items = std::make_shared<RecentEntries::Items>();
        items->folders = folders;
        items->items.reserve(placed.size());
        for (const Placed& one : placed)
            items->items.push_back(one.item);
        RecentSection section{kind, m_totals[size_t(kind)], {}};
        section.entries.m_items = std::move(items);
        sections.append(std::move(section));
    }
    return sections;
}

QList<RecentSection> recentSections(const Assets& assets) {
    QHash<Location, QList<qsizetype>> places;
    for (qsizetype position = 0; position < assets.size(); ++position)
        places[assets.at(position).url.parent()].append(position);
    const auto folders = std::make_shared<std::vector<std::unique_ptr<AssetIndex::Folder>>>();
    RecentCollector collector;
    for (auto place = places.cbegin(); place != places.cend(); ++place) {
        auto folder = std::make_unique<AssetIndex::Folder>(std::string(place.key().view()));
        for (const qsizetype position : place.value()) {
            const Asset& asset = assets.at(position);
            collector.add(asset.kind, asset.modified, position, folder->size());
            folder->add({asset.url.lastComponent(), asset.kind, asset.size, asset.modified, asset.starred});
        }
        collector.endFolder(*folder);
        folders->push_back(std::move(folder));
    }
    return collector.sections(folders);
}

} // namespace lumbra
