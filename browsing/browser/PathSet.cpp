// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathSet.h"

namespace lumbra {

PathSet PathSet::range(const PageList& list, qsizetype first, qsizetype last) {
    PathSet set;
    if (first > last)
        return set;
    set.m_list = list;
    set.m_marks.resize(list.size());
    if (list.repeats())
        for (qsizetype position = first; position <= last; ++position)
            set.m_marks.setBit(*list.positionOf(list.at(position).url));
    else
        set.m_marks.fill(true, first, last + 1);
    set.m_marked = set.m_marks.count(true);
    return set;
}

bool PathSet::contains(const Location& path) const {
    return m_others.contains(path) || markOf(path);
}

void PathSet::insert(const Location& path) {
    if (const auto position = m_list.positionOf(path))
        setMark(*position, true);
    else
        m_others.insert(path);
}

bool PathSet::remove(const Location& path) {
    if (m_others.remove(path))
        return true;
    const auto position = markOf(path);
    if (position)
        setMark(*position, false);
    return position.has_value();
}

void PathSet::remove(const QList<Location>& paths) {
    qsizetype next = 0;
    for (const Location& path : paths) {
        if (const auto position = markOf(path, next)) {
            setMark(*position, false);
            next = *position + 1;
        } else {
            m_others.remove(path);
        }
    }
}

PathSet PathSet::on(const PageList& list) const {
    PathSet set;
    if (list == m_list) {
        set = *this;
        set.m_others.clear();
        return set;
    }
    set.m_list = list;
    set.m_marks.resize(list.size());
    const auto look = [&](const Location& path) {
        if (const auto position = list.positionOf(path))
            set.m_marks.setBit(*position);
    };
    // A few are looked up one by one, and so are all where a path may stand twice.
    if (size() < list.size() / 8 || list.repeats()) {
        forEachMark([&](qsizetype position) { look(m_list.at(position).url); });
    } else {
        const std::vector<qint32> positions = list.positionsIn(m_list);
        for (size_t position = 0; position < positions.size(); ++position)
            if (positions[position] >= 0 && m_marks.testBit(positions[position]))
                set.m_marks.setBit(qsizetype(position));
    }
    std::for_each(m_others.begin(), m_others.end(), look);
    set.m_marked = set.m_marks.count(true);
    return set;
}

Assets PathSet::assets() const {
    if (m_marked == m_list.size())
        return m_list.assets();
    Assets assets;
    assets.reserve(m_marked);
    forEachMark([&](qsizetype position) { assets.append(m_list.at(position)); });
    return assets;
}

std::optional<Asset> PathSet::first() const {
    for (qsizetype position = 0; m_marked > 0; ++position)
        if (m_marks.testBit(position))
            return m_list.at(position);
    return {};
}

qint64 PathSet::bytes() const {
    if (m_marked == m_list.size())
        return m_list.bytes();
    qint64 bytes = 0;
    forEachMark([&](qsizetype position) { bytes += m_list.at(position).size; });
    return bytes;
}

std::optional<QList<Location>> PathSet::differences(const PathSet& other, qsizetype most) const {
    QList<Location> found;
    const bool sameList = m_list == other.m_list;
    if (!sameList && std::max(size(), other.size()) > most)
        return {};
    if (sameList) {
        const QBitArray differs = m_marks ^ other.m_marks;
        if (differs.count(true) > most)
            return {};
        for (qsizetype position = 0; position < differs.size(); ++position)
            if (differs.testBit(position))
                found.append(m_list.at(position).url);
    }
    const auto add = [&](const PathSet& those, const PathSet& without) {
        const QList<Location> paths = sameList ? those.m_others.values() : those.paths();
        for (const Location& path : paths)
            if (!without.contains(path))
                found.append(path);
    };
    add(*this, other);
    add(other, *this);
    return found.size() > most ? std::nullopt : std::optional(found);
}

bool operator==(const PathSet& a, const PathSet& b) {
    if (a.size() != b.size())
        return false;
    if (a.m_list == b.m_list)
        return a.m_marks == b.m_marks && a.m_others == b.m_others;
    return a.containsAll(b);
}

std::optional<qsizetype> PathSet::markOf(const Location& path, qsizetype guess) const {
    const auto position = m_list.positionOf(path, guess);
    return position && m_marks.testBit(*position) ? position : std::nullopt;
}

void PathSet::setMark(qsizetype position, bool marked) {
    if (m_marks.testBit(position) == marked)
        return;
    m_marks.setBit(position, marked);
    m_marked += marked ? 1 : -1;
}

template <typename Visit>
void PathSet::forEachMark(const Visit& visit) const {
    for (qsizetype position = 0, left = m_marked; left > 0; ++position)
        if (m_marks.testBit(position)) {
            visit(position);
            --left;
        }
}

QList<Location> PathSet::paths() const {
    QList<Location> paths;
    paths.reserve(size());
    forEachMark([&](qsizetype position) { paths.append(m_list.at(position).url); });
    return paths + m_others.values();
}

bool PathSet::holdsForAll(const std::function<bool(const Asset& asset)>& condition) const {
    for (qsizetype position = 0, left = m_marked; left > 0; ++position)
        if (m_marks.testBit(position)) {
            if (!condition(m_list.at(position)))
                return false;
            --left;
        }
    return std::all_of(m_others.begin(), m_others.end(),
                       [&condition](const Location& path) { return condition(Asset{.url = path, .starred = {}}); });
}

bool PathSet::containsAll(const PathSet& other) const {
    qsizetype next = 0;
    for (const Location& path : other.paths()) {
        const auto mark = markOf(path, next);
        if (mark)
            next = *mark + 1;
        else if (!m_others.contains(path))
            return false;
    }
    return true;
}

} // namespace lumbra
