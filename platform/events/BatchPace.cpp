// SPDX-License-Identifier: GPL-3.0-or-later
#include "BatchPace.h"

#include <sys/inotify.h>

namespace lumbra::events {

namespace {

// Of more files at once none is waited for alone.
constexpr size_t fewFiles = 4;

} // namespace

void BatchPace::note(const std::string& path, quint32 mask) {
    if (!m_windowEnd) {
        if (m_begun.size() <= fewFiles && mask & (IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO))
            m_begun[path] = mask & (IN_CREATE | IN_MODIFY);
        return;
    }
    const auto begun = m_begun.find(path);
    if (begun == m_begun.end())
        return;
    if (mask & IN_MOVED_FROM) {
        m_begun.erase(begun);
        m_isDue = true;
    } else if (begun->second && mask & IN_CLOSE_WRITE) {
        begun->second = false;
        m_isDue = true;
    }
}

void BatchPace::advance(Clock::time_point now, bool isWaiting) {
    if (!m_windowEnd || now < *m_windowEnd)
        return;
    if (!isWaiting)
        return endWindow();
    // The burst goes on.
    m_begun.clear();
    m_isDue = true;
}

void BatchPace::endWindow() {
    if (m_windowEnd)
        m_begun.clear();
    m_windowEnd.reset();
}

void BatchPace::left(Clock::time_point now) {
    if (m_begun.size() > fewFiles)
        m_begun.clear();
    m_windowEnd = now + m_window;
    m_isDue = false;
}

} // namespace lumbra::events
