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

Assets PathSet::among(const PageList& list) const {
    Assets found;
    if (list == m_list) {
        if (m_marked == list.size())
            return list.assets();
        found.reserve(m_marked);
        for (qsizetype position = 0; position < list.size(); ++position)
            if (m_marks.testBit(position))
                found.append(list.at(position));
        return found;
    }
    // A few are looked up one by one.
    if (size() < list.size() / 8) {
        std::vector<qsizetype> positions;
        for (const Location& path : paths())
            if (const auto position = list.positionOf(path))
                positions.push_back(*position);
        std::sort(positions.begin(), positions.end());
        for (const qsizetype position : positions)
            found.append(list.at(position));
        return found;
    }
    // Most files of a page that has loaded again stand in the order of before.
    qsizetype next = 0;
    for (qsizetype position = 0; position < list.size(); ++position) {
        const Asset& asset = list.at(position);
        const auto mark = markOf(asset.url, next);
        if (mark)
            next = *mark + 1;
        else if (!m_others.contains(asset.url))
            continue;
        if (!list.repeats() || list.positionOf(asset.url) == position)
            found.append(asset);
    }
    return found;
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

QList<Location> PathSet::paths() const {
    QList<Location> paths;
    paths.reserve(size());
    for (qsizetype position = 0; paths.size() < m_marked; ++position)
        if (m_marks.testBit(position))
            paths.append(m_list.at(position).url);
    return paths + m_others.values();
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
