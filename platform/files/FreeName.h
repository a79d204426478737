// The names that a thing may take where its own is taken.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lumbra::files {

// The name with a blank and the counter before its extension: "clip 2.mp4". What stands before the counter loses
// characters from its end until the whole has at most 255 bytes; an extension that leaves no room counts as none.
QString numbered(const QString& name, int counter);

} // namespace lumbra::files
