// From events to changes: an event says only where to look, and the disk is asked afresh for the truth at each path.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"

#include "platform/FileEvents.h"

namespace lumbra::Resolver {

// What a batch of events comes to. `roots` are the locations of the projects, and what lies in none of them is passed
// over. A path that has gone is not forgotten while the library's root, or the outside project that held it, is gone
// itself: an unmounted disk comes back.
//
// For events that say that something may have been missed, the tree is walked anew and compared with `index`.
//
// Reads the disk; touches nothing else. Any thread.
AssetIndex::Changes resolve(const QList<FileEvent>& events, const QList<Location>& roots, const Location& libraryRoot,
                            const AssetIndex& index);

} // namespace lumbra::Resolver
