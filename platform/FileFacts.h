// What the file system tells of an entry without opening it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Date.h"
#include "Location.h"

#include <optional>

namespace lumbra {

struct FileFacts {
    bool isFolder = false;
    bool isRegularFile = false;
    qint64 size = 0; // bytes; 0 if the file system does not tell
    Date modified = Date::distantPast();

    // Absent for what has gone or can't be examined. A symbolic link stands for itself. One system call, safe on any
    // thread.
    static std::optional<FileFacts> of(const Location& location);
    static std::optional<FileFacts> ofEntry(int folder, const char* name);
};

} // namespace lumbra
