// Turns the kernel's events into changed paths, and keeps the tree of watches in step: what appeared is entered, what
// moved gets its new place, what left is forgotten.
//
// A move comes in two halves, joined by a cookie. A folder whose second half stays away has left the trees.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BatchPace.h"
#include "WatchedRoots.h"

#include <chrono>
#include <optional>
#include <unordered_map>

namespace lumbra::events {

class ChangeReader {
public:
    using Clock = std::chrono::steady_clock;

    ChangeReader(FolderWatches& watches, WatchedRoots& roots, EventBatch& batch, BatchPace& pace)
        : m_watches(watches), m_roots(roots), m_batch(batch), m_pace(pace) {}

    // Reads until the kernel holds no more; false when the time was over before.
    bool readAll(Clock::time_point deadline);

    // Forgets the folders whose second half did not come. Only right after the kernel held no more.
    void settleMoves();

    // When `settleMoves` has something to do next; absent when no move is open.
    std::optional<Clock::time_point> nextSettling() const;

    // Times that the kernel dropped events.
    size_t overflows() const { return m_overflows; }

private:
    using Folder = WatchTree::Folder;

    struct Moving {
        WatchTree::Ticket folder;
        Clock::time_point since;
    };

    void read(const Inotify::Event& event);
    void readOwn(Folder& folder, quint32 mask);
    void readFolder(Folder& parent, const Inotify::Event& event, const std::string& path);
    bool appear(Folder& parent, const std::string& name);
    void leave(Folder& parent, const Inotify::Event& event);
    void arrive(Folder& parent, const Inotify::Event& event);
    void overflow();
    void abandon(const Moving& move);

    FolderWatches& m_watches;
    WatchedRoots& m_roots;
    EventBatch& m_batch;
    BatchPace& m_pace;
    std::unordered_map<quint32, Moving> m_moving; // by cookie
    bool m_hasReadAll = true;
    size_t m_overflows = 0;
};

} // namespace lumbra::events
