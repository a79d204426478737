// Keeps a watch on every folder of the trees, and notes the folders that got none, to be polled.
//
// No change may fall between looking and watching. So a folder's watch is set first, then it is listed, then its
// subfolders are entered; what appears meanwhile is in the listing, or has an event, or both. A path that was composed
// from older events may name another folder by now: whichever folder the kernel says a watch belongs to, counts.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FolderPicture.h"
#include "Inotify.h"
#include "WatchTree.h"

#include <atomic>
#include <chrono>
#include <functional>

namespace lumbra::events {

class FolderWatches {
public:
    using Folder = WatchTree::Folder;
    using Enters = std::function<bool(std::string_view name)>;

    struct Entered {
        Folder* folder = nullptr; // none when there is nothing to look after
        bool isNew = false;       // it did not stand there before, so what is in it is still to be gone through
    };

    // Long walks end early once `stopping` is true.
    FolderWatches(Enters enters, size_t watchLimit, const std::atomic<bool>& stopping);

    Inotify& inotify() { return m_inotify; }
    WatchTree& tree() { return m_tree; }

    // True for a folder, known by its name, that is looked after.
    bool enters(std::string_view name) const;

    // Absent while nothing readable stands at the path. Goes through it.
    Folder* enterRoot(const std::string& path);

    // Looks after the folder of this name; does not go through it.
    Entered enter(Folder& parent, std::string_view name);

    // Goes through the folder and all below it.
    void walk(Folder& folder);

    // Goes through a root anew, and forgets the folders that are no longer where they were.
    void walkAgain(Folder& root);

    void forget(Folder& folder);

    // True while every folder is known to stand where the tree has it: the disk, which is ahead of the events, has not
    // been asked since the kernel's queue was last empty. A move is then one change of parent; otherwise what moved
    // must be gone through again.
    bool isSettled() const { return m_settled; }
    void unsettle();

    // For the time when the kernel's queue has been read to its end. A change shows on disk a moment before its event
    // is queued, so the queue counts as complete only some time after the disk was asked.
    void settle();

    size_t polledCount() const { return m_pictures.size(); }
    std::vector<Folder*> polled() const;

    // Tries again to get a watch for a polled folder; it stays among the polled ones until `replacePicture`.
    Inotify::Result watchPolled(Folder& folder, const std::string& path);

    // Takes the folder's picture anew and hands back how it differs; with a watch it needs none from now on.
    std::vector<FolderPicture::Difference> replacePicture(Folder& folder, const std::string& path);

private:
    Inotify::Result add(const std::string& path, int& watch);
    std::vector<std::string> subfolders(Folder& folder, const std::string& path);

    const Enters m_enters;
    const size_t m_watchLimit;
    const std::atomic<bool>& m_stopping;
    Inotify m_inotify;
    WatchTree m_tree;
    std::unordered_map<Folder*, FolderPicture> m_pictures;
    bool m_settled = true;
    std::chrono::steady_clock::time_point m_lastAsked;
    quint32 m_visit = 0;
    size_t m_walked = 0;
};

// The path of an entry of a folder.
std::string childPath(const std::string& folder, std::string_view name);

} // namespace lumbra::events
