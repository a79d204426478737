// A set of paths that may be all of a long page: marks upon a list of files, beside paths that the list does not hold.
//
// To select 100,000 files is to set as many bits; a hash set of as many paths takes longer than a frame to fill, and
// again to compare and to free. A value whose copy costs next to nothing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageList.h"

#include <QBitArray>
#include <QSet>

#include <functional>

namespace lumbra {

class PathSet {
public:
    PathSet() = default;
    PathSet(std::initializer_list<Location> paths) : m_others(paths) {}

    // The paths of the list from one position to another, both included.
    static PathSet range(const PageList& list, qsizetype first, qsizetype last);
    static PathSet all(const PageList& list) { return range(list, 0, list.size() - 1); }

    qsizetype size() const { return m_marked + m_others.size(); }
    bool isEmpty() const { return size() == 0; }
    bool contains(const Location& path) const;

    void insert(const Location& path);
    bool remove(const Location& path); // whether it was there
    void remove(const QList<Location>& paths);

    // Those that the list holds, as marks upon it.
    PathSet on(const PageList& list) const;

    // Of those that are marked, in the order of their list: their files, which are not copied if they are all of the
    // list, the first one, and their summed size.
    Assets assets() const;
    std::optional<Asset> first() const;
    qint64 bytes() const;

    // In the order of the list, then those that it does not hold, in no order.
    QList<Location> paths() const;

    // Asks for each until it fails for one. Of a path that the list does not hold nothing else is known.
    bool holdsForAll(const std::function<bool(const Asset& asset)>& condition) const;

    // The assets of the list whose path is in the set, in the order of the list; one that stands there twice counts
    // once.
    Assets among(const PageList& list) const { return on(list).assets(); }

    // The paths that are in one of the two only, in no order; absent where there are more than `most`, or where to find
    // them would take long.
    std::optional<QList<Location>> differences(const PathSet& other, qsizetype most) const;

    friend bool operator==(const PathSet& a, const PathSet& b);

private:
    // Where the path is marked, looked for at `guess` first.
    std::optional<qsizetype> markOf(const Location& path, qsizetype guess = 0) const;
    void setMark(qsizetype position, bool marked);
    template <typename Visit>
    void forEachMark(const Visit& visit) const;
    bool containsAll(const PathSet& other) const;

    PageList m_list;
    QBitArray m_marks; // of each position in the list; a path that stands there twice is marked at the first
    qsizetype m_marked = 0;
    QSet<Location> m_others; // none of them is on the list
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::PathSet)
