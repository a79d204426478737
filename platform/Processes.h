// Runs another program to its end and hands back what it said: within a time, and within a bound of output.
//
// Blocks the calling thread, needs no event loop, and may be called on any thread but should not be on the main one.
// The child gets no standard input, none of our open files and a process group of its own. When the call returns,
// nothing of that group is left, unless it hangs in the kernel, as for a share that has stopped answering.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace lumbra::Processes {

struct Options {
    double timeout = 5;                  // seconds; then the group is asked to end, and a moment later ended
    qsizetype outputLimit = 1 << 20;     // bytes of standard output; at one more the group is ended
    std::optional<Location> folder = {}; // to work in; ours if absent
    QList<QByteArray> unset = {};        // variables of the environment that are not passed on

    // Limits of what the child may use; absent means ours.
    std::optional<quint64> memory = {};    // bytes of address space
    std::optional<quint64> processor = {}; // seconds
    std::optional<quint64> fileSize = {};  // bytes of any file that it writes
};

enum class End {
    exited,    // by itself; `status` is what it said
    signalled, // by a signal; `status` is its number
    timedOut,
    tooMuchOutput,
    notStarted, // no such program, no right to run it, or nothing left to start it with
};

struct Result {
    End end = End::notStarted;
    int status = 0;
    QByteArray output; // at most `outputLimit` bytes of standard output
    QByteArray errors; // at most the first 16 KiB of standard error

    bool succeeded() const { return end == End::exited && status == 0; }
};

// `program` is a path, or a name to look for in PATH.
Result run(const QByteArray& program, const QList<QByteArray>& arguments, const Options& options = {});

} // namespace lumbra::Processes
