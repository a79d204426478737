// Looks every few seconds at the folders that got no watch, and reports what is different as events would.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "EventBatch.h"
#include "FolderWatches.h"

#include <chrono>
#include <optional>

namespace lumbra::events {

class FolderPoll {
public:
    using Clock = std::chrono::steady_clock;

    FolderPoll(FolderWatches& watches, EventBatch& batch, const std::atomic<bool>& stopping)
        : m_watches(watches), m_batch(batch), m_stopping(stopping) {}

    // When the folders are to be looked at next; absent while every folder has a watch.
    std::optional<Clock::time_point> due() const;

    void lookIfDue();

private:
    void look();
    void report(WatchTree::Folder& folder, const std::string& path, const FolderPicture::Difference& difference);

    FolderWatches& m_watches;
    EventBatch& m_batch;
    const std::atomic<bool>& m_stopping;
    std::optional<Clock::time_point> m_next;
};

} // namespace lumbra::events
