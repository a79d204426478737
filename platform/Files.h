// Moves, copies and trashes files and whole folders without losing anything they carry: every attribute that users and
// programs have set, the mode, the times, and names that are not UTF-8.
//
// What is a rename on one file system happens within the call. What must carry bytes is a `Transfer`, which belongs on
// a worker: it copies under hidden names beside the targets, and gives a target its name only once all of it is on
// disk. Nothing that exists is ever overwritten, but where `IfTaken::replace` says so. No call here starts an event
// loop.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>
#include <stop_token>

namespace lumbra::Files {

// What went wrong, as a sentence for the user that names the file, and the system's error number behind it.
struct Error {
    QString description;
    int code = 0;

    bool operator==(const Error&) const = default;
};

// A location in the folder at which nothing exists (a link that leads nowhere counts as something): the name, else the
// name with a blank and a counter from 2 on before its extension. A name whose only dot is its first character has no
// extension. Where the counter would make the name longer than 255 bytes, characters are dropped from its base's end.
Location freeName(const QString& name, const Location& folder);

// The same, with another notion of what is taken: one who has promised names keeps them free too.
Location freeName(const QString& name, const Location& folder, const std::function<bool(const Location&)>& taken);

// True when something, be it a broken link, stands at the location.
bool isTaken(const Location& location);

// Gives a file or folder (a link: itself) another name or parent. Absent on success. Never replaces: EEXIST when the
// target is taken; EXDEV, untouched, when it lies on another file system.
std::optional<Error> rename(const Location& from, const Location& to);

// Makes one folder; its parent must exist and it must not.
std::optional<Error> makeFolder(const Location& folder);

// Makes the folder and what is missing above it; one that exists is no error.
std::optional<Error> makeFolders(const Location& folder);

// Puts a file, folder or link into the desktop's trash. Blocks as long as the trash takes, across file systems for the
// time of a copy.
std::optional<Error> trash(const Location& location);

struct Transfer {
    enum class Kind { move, copy };
    enum class IfTaken {
        nextFreeName, // arrives under the next free name of its folder
        replace,      // the file there goes only when the new one is complete; refused for the source itself
    };

    Location source;
    Location target;
    Kind kind = Kind::copy;
    IfTaken ifTaken = IfTaken::nextFreeName;
};

struct Progress {
    QString name; // the file under way
    qint64 files = 0;
    qint64 fileCount = 0;
    qint64 bytes = 0;
    qint64 byteCount = 0;

    bool operator==(const Progress&) const = default;
};

// What became of one transfer: where it arrived, or why it did not. Both when a move arrived but had to leave its
// source, or some of it, where it was. Neither when it was cancelled.
struct Arrival {
    Location source;
    std::optional<Location> target;
    std::optional<Error> error;
};

// Carries out the transfers in order, for as long as it takes; one that fails does not stop the others. Cancelled,
// every transfer that has not arrived leaves nothing at its target and its source as it was. A move removes its source
// only after the whole of it has arrived, and only what it copied: what was added or changed there meanwhile stays.
// When the target's file system can't hold the source's attributes, a move arrives without them, keeps the source and
// reports that; a copy leaves them behind in silence, since its source still has them.
//
// A folder that holds anything but files, folders and links (a pipe, a socket, a device) does not arrive at all.
//
// `journal` is the file that remembers hidden copies under way, so that `cleanLeftovers` can remove them after a crash.
// `report` is called on the calling thread, at most every 50 ms and once at the end.
QList<Arrival> carryOut(const QList<Transfer>& transfers, const Location& journal, std::stop_token stop = {},
                        const std::function<void(const Progress&)>& report = {});

// Removes what processes that no longer run have left half-copied, as long as that takes. Never touches what a running
// process works on, nor anything but a hidden copy, whatever the journal says.
void cleanLeftovers(const Location& journal);

} // namespace lumbra::Files
