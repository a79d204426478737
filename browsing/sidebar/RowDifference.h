// The fewest steps that turn one list of distinct keys into another, so that a view keeps what stays and moves only
// what changed its place.
//
// Pure; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

namespace lumbra {

struct RowDifference {
    static constexpr qsizetype mostMoves = 64;

    enum class Kind { remove, move, insert };

    // To be carried out in order, each on what the one before left.
    struct Step {
        Kind kind;
        qsizetype first; // remove and insert: the first position; move: the position to take from
        qsizetype count; // of positions; 1 for a move
        qsizetype to;    // move: the position after the step

        friend bool operator==(const Step&, const Step&) = default;
    };

    // Removals, then moves, then insertions; neighbours are taken together. No key stands twice in either list.
    static QList<Step> between(const QStringList& before, const QStringList& after);
};

} // namespace lumbra
