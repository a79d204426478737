// Texts as rows. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentRow.h"

namespace lumbra {

// A row for each line, and several for one that is very long, at most `mostRows`. Empty lines at the end make none.
DocumentRows textRows(const QString& text, DocumentRow::Style style);

// A row for each cue of subtitles in either of the usual formats, with the moment from which it shows.
DocumentRows subtitleRows(const QString& text);

// Control characters and what else has no shape become blanks, tabs the blanks to the next of their stops.
QString printableText(const QString& text);

} // namespace lumbra
