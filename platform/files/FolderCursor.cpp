// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderCursor.h"

#include <cerrno>
#include <string_view>

namespace lumbra::files {

int FolderCursor::enter(const char* name) {
    struct stat facts;
    if (::fstat(folder(), &facts) != 0)
        return errno;
    Descriptor below = openFolder(folder(), name);
    if (!below)
        return errno;
    m_above.push_back({facts.st_dev, facts.st_ino});
    m_current = std::move(below);
    return 0;
}

int FolderCursor::leave(Descriptor& left) {
    // The top need not be readable.
    const int access = m_above.size() == 1 ? O_PATH : O_RDONLY;
    Descriptor above(::openat(folder(), "..", access | O_DIRECTORY | O_CLOEXEC));
    struct stat facts;
    if (!above || ::fstat(above.number(), &facts) != 0)
        return errno;
    const Identity expected = m_above.back();
    if (facts.st_dev != expected.device || facts.st_ino != expected.inode)
        return ESTALE;
    m_above.pop_back();
    left = std::exchange(m_current, isAtTop() ? Descriptor() : std::move(above));
    return 0;
}

int listEntries(int folder, std::vector<Entry>& entries) {
    // Opened anew, since the stream takes its descriptor over and moves its position.
    Descriptor listed = openFolder(folder, ".");
    DIR* const stream = listed ? ::fdopendir(listed.number()) : nullptr;
    if (!stream)
        return errno;
    listed.release();
    errno = 0;
    while (const dirent* entry = ::readdir(stream)) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..")
            entries.push_back({std::string(name), entry->d_type});
        errno = 0;
    }
    const int code = errno;
    ::closedir(stream);
    return code;
}

} // namespace lumbra::files
