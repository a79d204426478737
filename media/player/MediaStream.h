// Gives mpv the bytes of files on disk, and nothing else.
//
// mpv would wait for a disk without an end: a share that has stopped answering would hold its threads, then whoever
// tells it to stop, then the window. Here every system call on the file is made by a thread of the stream's own, which
// mpv, told to stop, stops waiting for. And mpv would open whatever an address in a file asks for; this knows one kind
// of address, that of a regular file.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

struct mpv_handle;

namespace lumbra {
struct MpvLibrary;
}

namespace lumbra::MediaStream {

// Lets the player open the addresses below. Once for each player, before it loads a file.
void serve(const MpvLibrary& library, mpv_handle* mpv);

// What to tell it to load.
QByteArray addressOf(const Location& file);

} // namespace lumbra::MediaStream
