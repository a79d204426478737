// Turns folders into assets: `walk` goes through a whole tree, `list` looks at one folder, and `isInsidePruned` answers
// for one path whether a walk would pass it by. All apply the same rules for what is invisible.
//
// Failures are absence: an unreadable folder is empty, an entry that can't be examined is not there, and neither is one
// whose name is not UTF-8 or whose path is longer than the system takes (4,095 bytes). No state; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "Model.h"

#include <functional>
#include <stop_token>

namespace lumbra::Scanner {

struct Listing {
    QList<Location> folders; // visible subfolders, in natural order
    Assets assets;           // in the order in which the file system gave them
};

// Folder names that are never entered, wherever they stand in a tree; compared exactly.
bool isPrunedName(std::string_view name);

// True for a folder whose name makes it a package: one thing to the user, never entered and never listed.
bool isPackageName(std::string_view name);

// True for a folder that neither a walk nor a listing shows: hidden, pruned or a package.
bool isInvisibleFolder(std::string_view name);

// Calls `body` for each asset of the tree, on the calling thread, in the file system's order.
void walk(const Location& root, const std::function<void(const Asset&)>& body);

// The same walk over several trees, by `workers` threads that share the folders among them, into an index. Stops early,
// with what it has, when asked to.
AssetIndex index(const QList<Location>& roots, int workers, std::stop_token stop = {});

// A file of `known` is taken as it stands there, if the folder still has it: what a listing costs is to look at each.
Listing list(const Location& folder, const AssetIndex::Folder* known = nullptr);

// True when a component of `url` below `root`, the last one included, is hidden or pruned. Both are made canonical.
bool isInsidePruned(const Location& url, const Location& root);

} // namespace lumbra::Scanner
