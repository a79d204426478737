// The kernel's side of file events: watches on folders, and the queue of what happened in them.
//
// The kernel's queue is short (16,384 events) and drops what does not fit, so `take` moves it into memory often, also
// from the middle of long work; `next` hands the events out in order when their turn comes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Descriptor.h"

#include <QtGlobal>

#include <memory>
#include <string>
#include <vector>

struct inotify_event;

namespace lumbra::events {

class Inotify {
public:
    struct Event {
        int watch = -1;
        quint32 mask = 0;
        quint32 cookie = 0; // joins the two halves of a move
        std::string name;   // empty for the watched folder itself
    };

    enum class Result { watching, noSpace, failed };

    Inotify() { open(); }
    Q_DISABLE_COPY_MOVE(Inotify)

    // To wait on; -1 while the kernel gives no queue, and so every watch is refused for want of space.
    int fd() const { return m_queue.number(); }

    // The same folder gives the same watch again, whatever its path. Never follows a symbolic link.
    Result add(const std::string& folder, int& watch);
    void remove(int watch);

    // Moves what the kernel holds into memory. False when it held nothing.
    bool take();

    // The next event; false when none is in memory.
    bool next(Event& event);
    bool hasNext() const { return m_read < m_bytes.size(); }

private:
    bool open();

    Descriptor m_queue;
    std::unique_ptr<char[]> m_chunk; // what one read takes
    std::vector<char> m_bytes;
    size_t m_read = 0;
};

} // namespace lumbra::events
