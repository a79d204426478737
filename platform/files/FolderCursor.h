// Stands in one folder of a tree and goes down and up in it, at any depth: only the folder that it stands in is open,
// so that neither the length of a path nor the number of open files bounds the depth.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Descriptor.h"

#include <dirent.h>
#include <sys/stat.h>

#include <string>
#include <vector>

namespace lumbra::files {

// An entry of a folder, as it was listed.
struct Entry {
    std::string name;
    unsigned char type; // a DT_ constant, DT_UNKNOWN where the file system does not tell
};

// What is listed for a thing of this mode.
inline unsigned char typeOf(mode_t mode) {
    return static_cast<unsigned char>(IFTODT(mode));
}

class FolderCursor {
public:
    // Stands at first in an open folder of the caller, which stays open and may be one that only serves names (O_PATH).
    explicit FolderCursor(int top) : m_top(top) {}

    int folder() const { return isAtTop() ? m_top : m_current.number(); }
    bool isAtTop() const { return m_above.empty(); }

    // Goes down into a folder, never through a link. 0 or an error number; then it stays where it is.
    int enter(const char* name);

    // Goes up, and hands out the folder that it left. Fails with ESTALE when that folder lies elsewhere by now: going
    // up would lead into another tree. Not from the top.
    int leave(Descriptor& left);

private:
    struct Identity {
        dev_t device;
        ino_t inode;
    };

    int m_top;
    Descriptor m_current; // none at the top
    std::vector<Identity> m_above;
};

// The entries of an open folder but "." and "..". 0 or an error number.
int listEntries(int folder, std::vector<Entry>& entries);

} // namespace lumbra::files
