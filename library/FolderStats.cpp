// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderStats.h"

#include <algorithm>

namespace lumbra {

namespace {

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder)
           && (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

} // namespace

void FolderStats::insert(const Asset& asset) {
    if (newest.size() == 3 && newest.last().modified >= asset.modified)
        return;
    const auto later =
        std::ranges::find_if(newest, [&](const Asset& entry) { return entry.modified < asset.modified; });
    newest.insert(later, asset);
    if (newest.size() == 4)
        newest.removeLast();
}

bool FolderStatsMap::Candidate::operator==(const Candidate& other) const {
    if (folder == other.folder)
        return place == other.place;
    // The folder may have been rebuilt for another file of it.
    return folder && other.folder && folder->path() == other.folder->path()
           && folder->at(place) == other.folder->at(other.place);
}

void FolderStatsMap::Sums::merge(const Sums& other) {
    count += other.count;
    for (size_t i = 0; i < other.newestCount; ++i)
        insert(other.newest[i]);
}

const FolderStatsMap::Entry* FolderStatsMap::entry(const Location& folder) const {
    const auto found = std::ranges::lower_bound(m_entries, folder.view(), {}, &Entry::path);
    return found != m_entries.end() && found->path == folder.view() ? &*found : nullptr;
}

std::optional<FolderStats> FolderStatsMap::find(const Location& folder) const {
    const Entry* const found = entry(folder);
    if (!found)
        return std::nullopt;
    FolderStats stats{found->sums.count, {}};
    for (size_t i = 0; i < found->sums.newestCount; ++i)
        stats.newest.append(found->sums.newest[i].folder->assetAt(found->sums.newest[i].place));
    return stats;
}

// Goes from the last folder to this one, up to what both have in common and down again. Each folder is added to the one
// above when it is left, and so but once, however deep it lies and however many there are in it.
void FolderStatsMap::Summing::add(std::string_view folder, std::string_view project, const Sums& direct) {
    // A project inside another keeps what it sums up to itself.
    if (!m_steps.empty()
        && (m_steps.front().length != project.size() || !isAtOrBelow(folder, m_path.substr(0, project.size()))))
        while (!m_steps.empty())
            leave();
    while (!m_steps.empty() && !isAtOrBelow(folder, m_path.substr(0, m_steps.back().length)))
        leave();
    m_path = folder;
    while (m_steps.empty() || m_steps.back().length < folder.size()) {
        const size_t length =
            m_steps.empty() ? project.size() : std::min(folder.find('/', m_steps.back().length + 1), folder.size());
        m_steps.push_back({length, m_entries.size(), {}});
        m_entries.push_back({folder.substr(0, length), {}});
    }
    m_steps.back().sums.merge(direct);
}

void FolderStatsMap::Summing::leave() {
    const Step left = m_steps.back();
    m_steps.pop_back();
    m_entries[left.entry].sums = left.sums;
    if (!m_steps.empty())
        m_steps.back().sums.merge(left.sums);
}

void FolderStatsMap::Summing::append(Summing&& later) {
    for (Summing* const part : {this, &later})
        while (!part->m_steps.empty())
            part->leave();
    m_entries.insert(m_entries.end(), later.m_entries.begin(), later.m_entries.end());
}

FolderStatsMap FolderStatsMap::Summing::finish(const AssetIndex& index) && {
    while (!m_steps.empty())
        leave();
    if (!std::ranges::is_sorted(m_entries, {}, &Entry::path))
        std::ranges::stable_sort(m_entries, {}, &Entry::path);
    FolderStatsMap map;
    map.m_index = index;
    for (const Entry& entry : m_entries) {
        if (!map.m_entries.empty() && map.m_entries.back().path == entry.path)
            map.m_entries.back().sums.merge(entry.sums);
        else
            map.m_entries.push_back(entry);
    }
    return map;
}

} // namespace lumbra
