// From events to changes: an event says only where to look, and the disk is asked afresh for the truth at each path.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "KnownFolder.h"
#include "platform/FileEvents.h"

namespace lumbra::Resolver {

// What a batch of events comes to. `roots` are the locations of the projects, canonical as those are; what lies in none
// of them is passed over, but that a project which is no longer there is forgotten.
//
// A folder that appeared or moved is among the gone, and all that was found in it among the assets, which come after:
// it may have taken another's place. Of a tree whose events were lost, only the difference to `index`, which is what is
// known so far.
//
// A path that has gone is not forgotten while its holder, which is `library` or the outside project that it lies in, is
// gone itself or has another folder in its place: an unmounted disk comes back.
//
// Reads the disk; touches nothing else. Any thread.
AssetIndex::Changes resolve(const QList<FileEvent>& events, const QList<Location>& roots, const KnownFolder& library,
                            const AssetIndex& index);

// Several batches as one, with one event for each path. Since only the first event of a path counts, it gets the flags
// of all: a folder that was touched and then made anew is to be gone through.
QList<FileEvent> merged(const QList<FileEvent>& events);

} // namespace lumbra::Resolver
