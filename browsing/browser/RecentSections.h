// The feed of the Recent page: one section for each kind, newest first, calm when an agent renders a long run of frames
// into one folder, since all but a folder's four newest files stand together as one stack.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <functional>
#include <variant>

namespace lumbra {

// A folder's files beyond its four newest.
struct RecentStack {
    Location folder;
    Asset cover;         // the newest of them, whose date decides where the stack stands
    qsizetype count = 1; // how many the stack holds; the four that stand alone are not counted

    friend bool operator==(const RecentStack&, const RecentStack&) = default;
};

using RecentEntry = std::variant<Asset, RecentStack>;

// Tells entries apart within a section: the asset's path, or "stack:" and the folder's.
QString identity(const RecentEntry& entry);

struct RecentSection {
    AssetKind kind = AssetKind::image;
    qsizetype total = 0; // assets that the section stands for, stacked ones included
    QList<RecentEntry> entries;

    friend bool operator==(const RecentSection&, const RecentSection&) = default;
};

// Newest first; assets with equal dates keep the order in which they come.
QList<RecentSection> recentSections(const Assets& assets);

// Gathers the sections folder by folder, in any number, without holding on to every file: of each folder and kind only
// the five newest can ever show.
class RecentCollector {
public:
    // Yields the asset for the position that was given to `add`. Called for those that show.
    using AssetAt = std::function<Asset(qsizetype position)>;

    // Adds a file of the folder that is being collected. Of files with equal dates, in whatever folders, that of the
    // lower position stands first; a folder's positions are added in rising order.
    void add(AssetKind kind, Date modified, qsizetype position);

    void endFolder(const Location& folder, const AssetAt& assetAt);

    QList<RecentSection> sections() const;

private:
    struct Pick {
        Date modified;
        qsizetype position;
    };
    struct Newest {
        qsizetype count = 0;
        std::array<Pick, 5> picks; // newest first, the first `count` of them
        void add(Pick pick);
    };
    struct Placed {
        Date modified;
        qsizetype position;
        RecentEntry entry;
    };

    std::array<Newest, allAssetKinds.size()> m_folder;
    std::array<qsizetype, allAssetKinds.size()> m_totals{};
    std::array<std::vector<Placed>, allAssetKinds.size()> m_placed;
};

} // namespace lumbra
