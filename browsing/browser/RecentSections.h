// The feed of the Recent page: one section for each kind, newest first, calm when an agent renders a long run of frames
// into one folder, since all but a folder's four newest files stand together as one stack.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/AssetIndex.h"

#include <iterator>
#include <memory>
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

// The entries of a section, put together when they are asked for: in a month of a million files there are half a
// million, of which a page shows some dozens. They point into the folders that they were found in and hold on to them.
// A value whose copy costs nothing.
class RecentEntries {
public:
    class Iterator;

    qsizetype size() const { return m_items ? qsizetype(m_items->items.size()) : 0; }
    bool isEmpty() const { return size() == 0; }
    RecentEntry operator[](qsizetype place) const;
    RecentEntry last() const { return (*this)[size() - 1]; }
    QList<RecentEntry> first(qsizetype count) const;

    Iterator begin() const;
    Iterator end() const;

    friend bool operator==(const RecentEntries& a, const RecentEntries& b);

private:
    friend class RecentCollector;

    struct Item {
        const AssetIndex::Folder* folder;
        quint32 place;   // of the asset, or of the stack's cover
        quint32 stacked; // how many the stack holds; 0 for a file that stands alone

        bool operator==(const Item& other) const;
    };
    struct Items {
        std::shared_ptr<const void> folders; // what keeps them
        std::vector<Item> items;
    };
    std::shared_ptr<const Items> m_items;
};

class RecentEntries::Iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = RecentEntry;
    using difference_type = std::ptrdiff_t;

    Iterator(const RecentEntries& entries, qsizetype place) : m_entries(&entries), m_place(place) {}

    RecentEntry operator*() const { return (*m_entries)[m_place]; }
    Iterator& operator++() {
        ++m_place;
        return *this;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

private:
    const RecentEntries* m_entries;
    qsizetype m_place;
};

struct RecentSection {
    AssetKind kind = AssetKind::image;
    qsizetype total = 0; // assets that the section stands for, stacked ones included
    RecentEntries entries;

    friend bool operator==(const RecentSection&, const RecentSection&) = default;
};

// Newest first; assets with equal dates keep the order in which they come.
QList<RecentSection> recentSections(const Assets& assets);

// Gathers the sections folder by folder, in any number, without holding on to every file: of each folder and kind only
// the five newest can ever show.
class RecentCollector {
public:
    // Adds a file of the folder that is being collected, by its place there. Of files with equal dates, in whatever
    // folders, that of the lower position stands first; a folder's positions are added in rising order.
    void add(AssetKind kind, Date modified, qsizetype position, size_t place);

    void endFolder(const AssetIndex::Folder& folder);

    // `folders` keeps those that were gone through.
    QList<RecentSection> sections(const std::shared_ptr<const void>& folders);

private:
    struct Pick {
        Date modified;
        qsizetype position;
        size_t place;
    };
    struct Newest {
        qsizetype count = 0;
        std::array<Pick, 5> picks; // newest first, the first `count` of them
        void add(const Pick& pick);
    };
    struct Placed {
        Date modified;
        qsizetype position;
        RecentEntries::Item item;
    };

    std::array<Newest, allAssetKinds.size()> m_folder;
    std::array<qsizetype, allAssetKinds.size()> m_totals{};
    std::array<std::vector<Placed>, allAssetKinds.size()> m_placed;
};

} // namespace lumbra
