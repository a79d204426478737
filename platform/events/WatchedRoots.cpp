// SPDX-License-Identifier: GPL-3.0-or-later
#include "WatchedRoots.h"

#include <algorithm>

namespace lumbra::events {

WatchedRoots::WatchedRoots(const QList<Location>& paths, FolderWatches& watches, EventBatch& batch)
    : m_watches(watches), m_batch(batch) {
    for (const Location& path : paths) {
        const std::string text(path.view());
        if (std::ranges::none_of(m_roots, [&](const Root& root) { return root.guard.path() == text; }))
            m_roots.push_back({RootGuard(text)});
    }
}

void WatchedRoots::begin() {
    for (Root& root : m_roots)
        takeUp(root);
}

bool WatchedRoots::areAllPresent() const {
    return std::ranges::all_of(m_roots, &Root::folder);
}

bool WatchedRoots::takeUp(Root& root) {
    if (!root.guard.arrive())
        return false;
    root.folder = m_watches.enterRoot(root.guard.path());
    // Between the two looks at the path another folder may have come to stand there.
    if (root.folder && root.guard.isStillThere())
        return true;
    lose(root);
    return false;
}

void WatchedRoots::lose(Root& root) {
    root.guard.lose();
    m_batch.drop(root.guard.path());
    if (root.folder)
        m_watches.forget(*root.folder);
    root.folder = nullptr;
}

void WatchedRoots::lose(WatchTree::Folder& folder) {
    for (Root& root : m_roots)
        if (root.folder == &folder)
            return lose(root);
}

void WatchedRoots::verify() {
    for (Root& root : m_roots)
        if (root.folder && !root.guard.isStillThere())
            lose(root);
}

void WatchedRoots::seek() {
    for (Root& root : m_roots)
        if (!root.folder && takeUp(root))
            m_batch.addTree(root.guard.path(), FileEvent::mustScan);
}

void WatchedRoots::walkAgain() {
    verify();
    for (Root& root : m_roots) {
        if (!root.folder)
            continue;
        m_watches.walkAgain(*root.folder);
        m_batch.addTree(root.guard.path(), FileEvent::mustScan);
    }
}

} // namespace lumbra::events
