// When a batch of changed paths may leave: the first of a quiet time at once, then one in each window while changes
// keep coming.
//
// A quiet time mostly ends with one file that is being saved, and its first event tells least: the file is still empty,
// or has the name it is given until it is whole. What completes the news of that first batch, once for each way, leaves
// at once too, lest a new picture stand there empty until the window's end: the file is closed, or moves to its name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace lumbra::events {

class BatchPace {
public:
    using Clock = std::chrono::steady_clock;

    explicit BatchPace(Clock::duration window) : m_window(window) {}

    // An event of a file, with the kernel's mask, as it goes into the batch.
    void note(const std::string& path, quint32 mask);

    // To be called before events are read; whether a batch is waiting to leave.
    void advance(Clock::time_point now, bool isWaiting);

    // The next batch does not wait for the window's end.
    void endWindow();

    // Whether a batch that holds anything leaves now.
    bool mayLeave() const { return m_isDue || !m_windowEnd; }

    // To be called when one has left.
    void left(Clock::time_point now);

    // Absent in a quiet time.
    std::optional<Clock::time_point> windowEnd() const { return m_windowEnd; }

private:
    // By path, whether the file is still open for writing.
    using Begun = std::map<std::string, bool, std::less<>>;

    const Clock::duration m_window;
    std::optional<Clock::time_point> m_windowEnd;
    bool m_isDue = false;
    Begun m_begun; // in a quiet time: what the batch holds that leaves next; in a window: what may be completed
};

} // namespace lumbra::events
