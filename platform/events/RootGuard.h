// Tells whether a root is still the folder that is being watched, and when one that went is back. A root that is
// unmounted, moved away or deleted takes nothing with it: its content is forgotten only when the root is there to say
// so.
//
// The trap: after an unmount the bare mount point stands at the root's path, an empty folder that looks like a root
// whose files were all deleted. A root that was a mounted file system is back only as one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <optional>
#include <string>

namespace lumbra::events {

class RootGuard {
public:
    explicit RootGuard(std::string path) : m_path(std::move(path)) {}

    const std::string& path() const { return m_path; }
    bool isPresent() const { return m_watched.has_value(); }

    // Takes the folder that stands at the path for the root. False when there is none, or just the bare mount point.
    bool arrive();

    // True while the path names the folder that `arrive` took.
    bool isStillThere() const;

    void lose();

private:
    struct Identity {
        quint64 device = 0;
        quint64 inode = 0;
        quint64 mount = 0;
        bool isMountPoint = false; // the root of a mounted file system

        bool isSameFolder(const Identity& other) const { return device == other.device && inode == other.inode; }
    };
    static std::optional<Identity> identify(const std::string& path);
    bool isLeftBehind(const Identity& now) const;

    std::string m_path;
    std::optional<Identity> m_watched;
    std::optional<Identity> m_left;      // what was watched before it went
    std::optional<Identity> m_uncovered; // what an unmount left in its place
};

} // namespace lumbra::events
