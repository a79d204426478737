// Markdown as rows. Safe on any thread.
//
// Nothing of it is followed by itself: markup of web pages within it is dropped but for its words, links are only
// told, and a picture is a path below `folder`, or just its description.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentRow.h"

namespace lumbra {

// At most `mostRows`. Asks the disk where the pictures are.
DocumentRows markdownRows(const QString& text, const Location& folder);

} // namespace lumbra
