// SPDX-License-Identifier: GPL-3.0-or-later
#include "RootGuard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace lumbra::events {

bool RootGuard::arrive() {
    const auto now = identify(m_path);
    if (!now || isLeftBehind(*now))
        return false;
    m_watched = now;
    m_left.reset();
    m_uncovered.reset();
    return true;
}

bool RootGuard::isStillThere() const {
    const auto now = identify(m_path);
    return now && m_watched && now->isSameFolder(*m_watched);
}

void RootGuard::lose() {
    const auto now = identify(m_path);
    // What stands there on another mount was uncovered when the root's file system left. On the same mount it is a
    // folder that took the root's place.
    if (now && m_watched && now->mount != m_watched->mount && !now->isMountPoint)
        m_uncovered = now;
    if (m_watched)
        m_left = m_watched;
    m_watched.reset();
}

bool RootGuard::isLeftBehind(const Identity& now) const {
    if (now.isMountPoint || !m_left)
        return false;
    // A mounter makes the bare folder anew before it mounts, so an unknown folder proves nothing.
    return m_left->isMountPoint || (m_uncovered && now.isSameFolder(*m_uncovered));
}

std::optional<RootGuard::Identity> RootGuard::identify(const std::string& path) {
    struct statx facts;
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_INO | STATX_MNT_ID,
                &facts)
            != 0
        || !S_ISDIR(facts.stx_mode))
        return std::nullopt;
    return Identity{makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino,
                    (facts.stx_mask & STATX_MNT_ID) ? facts.stx_mnt_id : 0,
                    (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0};
}

} // namespace lumbra::events
