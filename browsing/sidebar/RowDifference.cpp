// SPDX-License-Identifier: GPL-3.0-or-later
#include "RowDifference.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace lumbra {

namespace {

using Step = RowDifference::Step;
using Kind = RowDifference::Kind;

QHash<QString, qsizetype> positions(const QStringList& keys) {
    QHash<QString, qsizetype> found;
    found.reserve(keys.size());
    for (qsizetype position = 0; position < keys.size(); ++position)
        found.insert(keys[position], position);
    return found;
}

// The keys of a longest rising run of ranks: whatever is not among them must move, and nothing else.
QSet<qsizetype> longestRising(const QList<qsizetype>& ranks) {
    QList<qsizetype> tails; // index into `ranks` of the lowest end of a run of each length
    QList<qsizetype> previous(ranks.size(), -1);
    for (qsizetype index = 0; index < ranks.size(); ++index) {
        const auto place = std::lower_bound(tails.begin(), tails.end(), ranks[index],
                                            [&](qsizetype tail, qsizetype rank) { return ranks[tail] < rank; });
        if (place != tails.begin())
            previous[index] = *(place - 1);
        if (place == tails.end())
            tails.append(index);
        else
            *place = index;
    }
    QSet<qsizetype> rising;
    for (qsizetype index = tails.isEmpty() ? -1 : tails.last(); index >= 0; index = previous[index])
        rising.insert(ranks[index]);
    return rising;
}

} // namespace

QList<Step> RowDifference::between(const QStringList& before, const QStringList& after) {
    QList<Step> steps;
    if (before == after)
        return steps;
    const QHash<QString, qsizetype> positionAfter = positions(after);
    QList<qsizetype> ranks; // of the keys that are in both lists, as they stand before: where each belongs
    for (const QString& key : before) {
        const auto rank = positionAfter.constFind(key);
        if (rank != positionAfter.constEnd())
            ranks.append(*rank);
    }
    const QSet<qsizetype> staying = longestRising(ranks);
    const bool moves = ranks.size() - staying.size() <= mostMoves;
    const auto kept = [&](qsizetype rank) { return moves || staying.contains(rank); };
    QSet<qsizetype> present; // ranks that are there once the removals are done

    // From the end, so that the positions in front still hold.
    for (qsizetype end = before.size(); end > 0;) {
        qsizetype first = end;
        for (; first > 0; --first) {
            const auto rank = positionAfter.constFind(before[first - 1]);
            if (rank != positionAfter.constEnd() && kept(*rank)) {
                present.insert(*rank);
                break;
            }
        }
        if (first < end)
            steps.append({Kind::remove, first, end - first, 0});
        end = first - 1;
    }

    if (moves) {
        QList<qsizetype> sortedRanks = ranks;
        std::sort(sortedRanks.begin(), sortedRanks.end());
        for (qsizetype index = 0; index < sortedRanks.size(); ++index) {
            const qsizetype rank = sortedRanks[index];
            if (staying.contains(rank))
                continue;
            // Right behind its predecessor, which stands rightly already: it stayed, or it was moved before this one.
            const qsizetype from = ranks.indexOf(rank);
            const qsizetype behind = index == 0 ? -1 : ranks.indexOf(sortedRanks[index - 1]);
            const qsizetype to = behind < from ? behind + 1 : behind;
            if (to != from) {
                steps.append({Kind::move, from, 1, to});
                ranks.move(from, to);
            }
        }
    }

    for (qsizetype first = 0; first < after.size();) {
        qsizetype end = first;
        while (end < after.size() && !present.contains(end))
            ++end;
        if (first < end)
            steps.append({Kind::insert, first, end - first, 0});
        first = end + 1;
    }
    return steps;
}

} // namespace lumbra
