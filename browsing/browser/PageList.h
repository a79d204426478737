// The files of a page as one immutable value: the list itself, its summed size, and where each path stands in it.
//
// Made off the main thread for pages that grow with the library, then handed over whole: a copy costs a reference, two
// values are equal when they are copies of one another, and the last copy of a long list dies on a pool thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <memory>

namespace lumbra {

// Their paths, in the order given.
QList<Location> urlsOf(const Assets& assets);

class PageList {
public:
    PageList() = default;
    explicit PageList(Assets assets);

    // `previous` itself if it holds just these assets, so that whoever shows it sees that nothing changed.
    static PageList replacing(const PageList& previous, Assets assets);

    const Assets& assets() const&;
    Assets assets() && { return std::as_const(*this).assets(); }
    qsizetype size() const { return assets().size(); }
    bool isEmpty() const { return assets().isEmpty(); }
    const Asset& at(qsizetype position) const { return assets().at(position); }

    // Summed size in bytes.
    qint64 bytes() const { return m_data ? m_data->bytes : 0; }

    // The first position of the path. One that stands at `guess` is found there at once.
    std::optional<qsizetype> positionOf(const Location& path, qsizetype guess = 0) const;
    bool contains(const Location& path) const { return positionOf(path).has_value(); }

    // Of each position, where its path stands in the other list, or -1. Known without a look at any if the other is the
    // one that this list replaced; either list may hold no path twice.
    std::vector<qint32> positionsIn(const PageList& other) const;

    // A path stands here more than once.
    bool repeats() const { return m_data && m_data->repeats; }

    friend bool operator==(const PageList& a, const PageList& b) { return a.m_data == b.m_data; }

private:
    struct Slot {
        quint32 hash;
        quint32 position;
        friend auto operator<=>(const Slot&, const Slot&) = default;
    };
    struct Data {
        Assets assets;
        qint64 bytes = 0;
        bool repeats = false;
        std::vector<Slot> byHash; // sorted; eight bytes a file, where a hash table would hold every path once more
        std::weak_ptr<const Data> replaced;
        std::vector<qint32> positionsInReplaced;
    };

    PageList(Assets assets, const PageList& replaced);
    std::vector<qint32> positionsOf(const Assets& assets) const;

    std::shared_ptr<const Data> m_data; // none when empty
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::PageList)
