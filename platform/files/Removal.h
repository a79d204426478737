// Removes whole trees of any depth, without following links.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Manifest.h"

namespace lumbra::files {

// Removes `name` of the open folder with all that it holds, read-only folders too. 0 or the first error number; what
// can't be removed is left, the rest is gone. Nothing being there is no error.
int removeTree(int folder, const char* name);

// Removes of `name` of the open folder what the manifest tells was copied, where it is still just what was copied; all
// else is left.
struct Remains {
    bool hasOthers = false; // what was added or changed since the copy
    int code = 0;           // the first error number of what could not be removed
};
Remains removeCopied(int folder, const char* name, const Manifest& manifest);

} // namespace lumbra::files
