// The words of a text's rows, as they are marked and copied: without their looks, one character for each that is seen.
// Pure functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentRow.h"

#include <compare>
#include <utility>

namespace lumbra {

// A place between two characters of a text.
struct TextSpot {
    int row = 0;
    int at = 0; // characters before it in the row

    friend auto operator<=>(const TextSpot&, const TextSpot&) = default;
};

// The cells of a row of a table are parted by tabs.
QString wordsOf(const DocumentRow& row);

// How many characters of a row can be marked one by one. A row of a table is marked whole, as if it were one.
int lengthOf(const DocumentRow& row);

// What stands between two spots, the first not behind the second: tabs as tabs, lines as lines, paragraphs with a line
// between them, and the pieces of a line that is too long for a row in one.
QString wordsBetween(const DocumentRows& rows, TextSpot from, TextSpot to);

// The word at a character, or the blanks, from its beginning to its end.
std::pair<int, int> wordAt(const QString& words, int at);

} // namespace lumbra
