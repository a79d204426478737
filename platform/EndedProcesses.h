// Children that were killed and may not have gone yet. One that waits in the kernel, as for a share that has stopped
// answering, goes only when that answers: nobody waits for it, and nobody else is sent to the same place meanwhile.
//
// Any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <sys/types.h>

#include <chrono>
#include <optional>

namespace lumbra::EndedProcesses {

// Takes over a child that was killed; `file` is the path of what it was at work on, empty if that is not known.
void add(pid_t process, const QByteArray& file);

// Reaps those that have gone, without waiting. When to look again; absent when none are left.
std::optional<std::chrono::milliseconds> reap();

// Whether one that was killed some time ago still hangs in the kernel over a file of the same file system. Touches no
// file system but the system's own.
bool hangAt(const QByteArray& file);

} // namespace lumbra::EndedProcesses
