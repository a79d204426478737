// The cells of a table that is written as text. A pure function; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumbra {

struct TableCells {
    QList<QStringList> rows; // without those that are empty; some may be shorter than others
    bool isWhole = true;     // false: the text goes on

    static constexpr qsizetype mostRows = 50'000;
    static constexpr qsizetype mostColumns = 256;
    static constexpr qsizetype longestCell = 1000; // characters

    // Cells may be quoted, and then hold separators, line ends and doubled quotes. Without a separator it is the one of
    // comma, semicolon, tab and bar that the first line has most of.
    static TableCells of(const QString& text, std::optional<QChar> separator = std::nullopt);
};

} // namespace lumbra
