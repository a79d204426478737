// A folder as it stood at its path when it was taken for known: tells later whether the path still names that folder,
// or another, as the bare mount point of a disk that was unmounted.
//
// A value; asks the disk, on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <optional>
#include <utility>

namespace lumbra {

class KnownFolder {
public:
    // Takes the folder that stands there now, links followed. When there is none, nothing is known.
    explicit KnownFolder(const Location& path) : m_path(path), m_identity(identityAt(path)) {}

    const Location& path() const { return m_path; }
    bool isKnown() const { return m_identity.has_value(); }
    bool isStillThere() const { return m_identity && m_identity == identityAt(m_path); }

private:
    using Identity = std::pair<quint64, quint64>; // device and inode

    static std::optional<Identity> identityAt(const Location& path);

    Location m_path;
    std::optional<Identity> m_identity;
};

} // namespace lumbra
