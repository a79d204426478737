// The roots of the watched trees: taken up when they are there, lost with nothing reported as gone, taken up again and
// reported as a whole when they return.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "EventBatch.h"
#include "FolderWatches.h"
#include "RootGuard.h"

namespace lumbra::events {

class WatchedRoots {
public:
    WatchedRoots(const QList<Location>& paths, FolderWatches& watches, EventBatch& batch);

    // Takes up those that are there, for the first time: nothing is reported.
    void begin();

    bool areAllPresent() const;

    // Drops the root, its watches and what the batch holds of it.
    void lose(WatchTree::Folder& root);

    // Loses those whose path no longer names the folder that is watched.
    void verify();

    // Takes up those that have come or returned.
    void seek();

    // After events were dropped: goes through all of them and reports each as a whole.
    void walkAgain();

private:
    struct Root {
        RootGuard guard;
        WatchTree::Folder* folder = nullptr;
    };
    bool takeUp(Root& root);
    void lose(Root& root);

    FolderWatches& m_watches;
    EventBatch& m_batch;
    std::vector<Root> m_roots;
};

} // namespace lumbra::events
