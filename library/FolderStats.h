// What is summed over each folder and all below it: how many assets it holds, and the newest that can stand as its
// thumbnails.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "Model.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace lumbra {

struct FolderStats {
    qsizetype count = 0; // assets of any kind in this folder and below
    Assets newest;       // at most 3 images and videos in this folder and below, newest first

    // Keeps `newest` sorted and short; among equal dates the earlier arrival stays ahead.
    void insert(const Asset& asset);

    friend bool operator==(const FolderStats&, const FolderStats&) = default;
};

// The map from folder to FolderStats. It points into the index that it was summed over and holds on to it: written out,
// the paths of its folders and assets would take as much memory as the index itself, and as long as all the summing.
//
// A value that costs as much to copy as it has folders. Safe to read on any thread.
class FolderStatsMap {
public:
    class Summing;

    bool isEmpty() const { return m_entries.empty(); }
    size_t size() const { return m_entries.size(); }
    bool contains(const Location& folder) const { return entry(folder) != nullptr; }
    std::optional<FolderStats> find(const Location& folder) const;

    // All zero for a folder that is not there.
    FolderStats operator[](const Location& folder) const { return find(folder).value_or(FolderStats()); }

    // Compares what it says, whatever the indexes that it says it of.
    friend bool operator==(const FolderStatsMap& a, const FolderStatsMap& b) { return a.m_entries == b.m_entries; }

private:
    // An asset by its place in its folder.
    struct Candidate {
        const AssetIndex::Folder* folder = nullptr;
        size_t place = 0;
        Date modified;

        bool operator==(const Candidate& other) const;
    };

    struct Sums {
        qsizetype count = 0;
        std::array<Candidate, 3> newest;
        size_t newestCount = 0;

        // The same rule as FolderStats::insert.
        void insert(const Candidate& candidate) {
            size_t at = newestCount;
            while (at > 0 && newest[at - 1].modified < candidate.modified)
                --at;
            if (at == newest.size())
                return;
            newestCount = std::min(newestCount + 1, newest.size());
            for (size_t i = newestCount - 1; i > at; --i)
                newest[i] = newest[i - 1];
            newest[at] = candidate;
        }

        void merge(const Sums& other);

        friend bool operator==(const Sums&, const Sums&) = default;
    };

    struct Entry {
        std::string_view path; // a piece of a path of the index
        Sums sums;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    const Entry* entry(const Location& folder) const;

    AssetIndex m_index;
    std::vector<Entry> m_entries; // by path
};

// Sums up folder by folder. Folders are to come in the order of their paths, from which it follows which of them lie in
// each other; several summings, each over a part of them, are put together at the end.
class FolderStatsMap::Summing {
public:
    // Looks at each file of the folder and counts it in the folder and all above up to the project, which is a piece of
    // its path. `look` is called with each file and its place.
    template <typename Look>
    void add(const AssetIndex::Folder& folder, std::string_view project, const Look& look) {
        Sums direct;
        direct.count = qsizetype(folder.size());
        for (size_t place = 0; place < folder.size(); ++place) {
            const AssetIndex::File file = folder.at(place);
            if (file.kind == AssetKind::image || file.kind == AssetKind::video)
                direct.insert({&folder, place, file.modified});
            look(file, place);
        }
        add(folder.path(), project, direct);
    }

    // Takes what another summed up over the folders that follow.
    void append(Summing&& later);

    FolderStatsMap finish(const AssetIndex& index) &&;

private:
    // A folder that is still being summed up.
    struct Step {
        size_t length; // of its path
        size_t entry;
        Sums sums;
    };

    void add(std::string_view folder, std::string_view project, const Sums& direct);
    void leave();

    std::vector<Entry> m_entries; // a folder may stand here several times: "a" and "a/b" enclose "a-1"
    std::string_view m_path;      // the last folder's
    std::vector<Step> m_steps;    // from its project to the folder itself
};

} // namespace lumbra
