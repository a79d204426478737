// From events to changes: an event says only where to look, and the disk is asked afresh for the truth at each path.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "platform/FileEvents.h"

namespace lumbra::Resolver {

// What a batch of events comes to. `roots` are the locations of the projects, canonical as those are; what lies in none
// of them is passed over, but that a project which is no longer there is forgotten.
//
// `index` is what is known so far: of a folder that appeared or moved, and of a tree whose events were lost, the assets
// that are no longer found below it are among the gone.
//
// A path that has gone is not forgotten while the library's root, or the outside project that holds it, is gone itself
// or is changed for another during the look: an unmounted disk comes back.
//
// Reads the disk; touches nothing else. Any thread.
AssetIndex::Changes resolve(const QList<FileEvent>& events, const QList<Location>& roots, const Location& libraryRoot,
                            const AssetIndex& index);

} // namespace lumbra::Resolver
