// File events for whole trees, on inotify: one watch for each folder, whatever moves, appears or leaves.
//
// One thread drains the kernel's queue into a set of changed paths and does nothing else that could hold it up; when it
// falls behind, the kernel drops events and the tree must be compared with the disk. Batches go to `deliver`, called on
// that thread, which only passes them on: the first event of a quiet time at once, with what completes the file that it
// tells of, then one batch each `latency` seconds while events keep coming. At rest the thread sleeps without a timer.
//
// An event says only where to look; ask the disk for the truth. One batch holds a path once, and an event of a folder
// with `created`, `renamed` or `mustScan`, or of one that is gone, stands for everything below it.
//
// What has no event: entries whose name is not UTF-8, what lies below a symbolic link, and folders so deep that their
// path is longer than the system takes (4,095 bytes).
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QList>

#include <functional>
#include <memory>
#include <string_view>

namespace lumbra {

struct FileEvent {
    enum Flag : quint32 {
        // Events of everything at or below the folder may have been lost: compare it with the disk.
        mustScan = 1,
        created = 256,
        renamed = 2048,
    };

    Location path;
    quint32 flags = 0;

    friend bool operator==(const FileEvent&, const FileEvent&) = default;
};

class FileEvents {
public:
    struct Options {
        // Seconds between two batches of one burst.
        double latency = 0.4;

        // True for a folder that is watched and gone through, by its name. Files are reported whatever their name.
        std::function<bool(std::string_view name)> enters = [](std::string_view) { return true; };

        // Called once, on the thread, when every watch stands for the first time: what happens from then on is
        // reported. Whoever reads the trees without missing a change begins here.
        std::function<void()> started = {};

        // Watches to take at most, for tests of the limit; 0 means as many as the kernel gives.
        size_t watchLimit = 0;
    };

    // What `lumbra status` tells of the watches.
    struct Status {
        size_t watched = 0;       // folders with a watch
        size_t polled = 0;        // folders that got none and are looked at every few seconds instead
        size_t overflows = 0;     // times that the kernel dropped events
        bool rootsPresent = true; // false while a root is unmounted or was moved away

        friend bool operator==(const Status&, const Status&) = default;
    };

    // Starts at once and goes through the trees on its own thread. The roots are canonical paths. One that does not
    // exist, or that goes, is waited for: nothing in it is reported as gone, and when it is back it is reported with
    // `mustScan`.
    FileEvents(const QList<Location>& roots, Options options, std::function<void(QList<FileEvent>)> deliver);

    // Ends the thread; `deliver` is not called any more once this returns. The watches are given back in the
    // background, which takes the kernel a while.
    ~FileEvents();
    Q_DISABLE_COPY_MOVE(FileEvents)

    Status status() const;

    // Blocks until every watch that the trees need as of now is set, or the time (seconds) is over; true when set. For
    // tests and the command, never on the main thread.
    bool waitUntilWatching(double seconds) const;

    // Delivers all that has happened so far without waiting for the window's end, and then calls `delivered`, on the
    // thread: whoever ends these events has missed none. Not called when they end before.
    void deliverNow(std::function<void()> delivered);

private:
    class Worker;
    std::shared_ptr<Worker> m_worker;
};

} // namespace lumbra
