// What stands at the beginning of an office document, for those that hold no picture of themselves.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Archive.h"
#include "TextPage.h"

namespace lumbra::reader {

// Of a text, or of the first slide. Empty if it is neither.
Paragraphs officeText(const Archive& archive);

// The first rows of the first sheet. Empty if it has none.
QList<QStringList> officeTable(const Archive& archive);

} // namespace lumbra::reader
