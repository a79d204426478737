// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecentSections.h"

#include <QHash>

namespace lumbra {

namespace {

constexpr qsizetype singles = 4;

} // namespace

QString identity(const RecentEntry& entry) {
    if (const auto* stack = std::get_if<RecentStack>(&entry))
        return QStringLiteral("stack:") + stack->folder.toString();
    return std::get<Asset>(entry).url.toString();
}

void RecentCollector::Newest::add(Pick pick) {
    const auto end = picks.begin() + std::min<qsizetype>(count, singles + 1);
    ++count;
    // Only a later date goes ahead: among equals the earlier arrival stays.
    const auto place = std::find_if(picks.begin(), end, [&](const Pick& p) { return p.modified < pick.modified; });
    if (place == picks.end())
        return;
    std::move_backward(place, end == picks.end() ? end - 1 : end, end == picks.end() ? end : end + 1);
    *place = pick;
}

void RecentCollector::add(AssetKind kind, Date modified, qsizetype position) {
    m_folder[size_t(kind)].add({modified, position});
}

void RecentCollector::endFolder(const Location& folder, const AssetAt& assetAt) {
    for (const AssetKind kind : allAssetKinds) {
        Newest& newest = m_folder[size_t(kind)];
        for (qsizetype i = 0; i < std::min(newest.count, singles + 1); ++i) {
            const Pick& pick = newest.picks[size_t(i)];
            Asset asset = assetAt(pick.position);
            RecentEntry entry = i < singles
                                    ? RecentEntry(std::move(asset))
                                    : RecentEntry(RecentStack{folder, std::move(asset), newest.count - singles});
            m_placed[size_t(kind)].push_back({pick.modified, pick.position, std::move(entry)});
        }
        m_totals[size_t(kind)] += newest.count;
        newest.count = 0;
    }
}

QList<RecentSection> RecentCollector::sections() const {
    QList<RecentSection> sections;
    for (const AssetKind kind : allAssetKinds) {
        const std::vector<Placed>& placed = m_placed[size_t(kind)];
        if (placed.empty())
            continue;
        std::vector<const Placed*> order;
        order.reserve(placed.size());
        for (const Placed& one : placed)
            order.push_back(&one);
        std::sort(order.begin(), order.end(), [](const Placed* a, const Placed* b) {
            return a->modified != b->modified ? a->modified > b->modified : a->position < b->position;
        });
        RecentSection section{kind, m_totals[size_t(kind)], {}};
        section.entries.reserve(qsizetype(order.size()));
        for (const Placed* one : order)
            section.entries.append(one->entry);
        sections.append(std::move(section));
    }
    return sections;
}

QList<RecentSection> recentSections(const Assets& assets) {
    QHash<Location, QList<qsizetype>> folders;
    for (qsizetype position = 0; position < assets.size(); ++position)
        folders[assets.at(position).url.parent()].append(position);
    RecentCollector collector;
    for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
        for (const qsizetype position : folder.value())
            collector.add(assets.at(position).kind, assets.at(position).modified, position);
        collector.endFolder(folder.key(), [&](qsizetype position) { return assets.at(position); });
    }
    return collector.sections();
}

} // namespace lumbra
