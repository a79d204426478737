// A file that a player was told to load, as far as the player has got with it. A plain value that knows no player.
//
// The player works in its own time, so that a report may be of the file before. What is asked of it carries the file's
// number and its answers bring that back; what it tells by itself names the entry in its list.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace lumbra {

struct LoadedFile {
    quint64 number = 1; // counts what was loaded and unloaded
    qint64 entry = 0;   // 0 while not known

    bool isBegun = false; // the player has turned to it
    bool isOpen = false;  // and knows what is in it
    bool hasFailed = false;

    bool hasVideo = false; // for certain
    bool isSeekable = false;
    bool isAtEnd = false;
    bool isPlaced = false; // it stands where it was sent to, to the instant, whenever the picture there began

    bool canPlayReverse() const { return isSeekable && hasVideo; }
    bool isEntry(qint64 other) const { return entry != 0 && other == entry; }

    // Another file, or none.
    LoadedFile next() const {
        LoadedFile made;
        made.number = number + 1;
        return made;
    }
};

} // namespace lumbra
