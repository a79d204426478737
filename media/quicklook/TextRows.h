// Texts as rows. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentRow.h"

namespace lumbra {

// Characters from one stop of the tabs to the next.
inline constexpr int tabStop = 4;

// A row for each line, and several for one that is very long, at most `mostRows`. Empty lines at the end make none.
DocumentRows textRows(const QString& text, DocumentRow::Style style);

// A row for each cue of subtitles in either of the usual formats, with the moment from which it shows.
DocumentRows subtitleRows(const QString& text);

// Control characters and what else has no shape become blanks, tabs the blanks to the next of their stops.
QString printableText(const QString& text);

// What the file has between two characters of `printableText`: a tab where at least one of its blanks is. The text is
// one or more lines, printable but for its tabs.
QString textWithTabs(const QString& text, int from, int to);

} // namespace lumbra
