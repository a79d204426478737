// SPDX-License-Identifier: GPL-3.0-or-later
#include "Removal.h"

#include "FolderCursor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <tuple>
#include <unordered_set>

namespace lumbra::files {

namespace {

// Lets its owner read, enter and change a folder, whatever its mode was. Never through a link.
bool openUp(int folder, const char* name) {
    const Descriptor found(::openat(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!found)
        return false;
    char itself[32];
    std::snprintf(itself, sizeof itself, "/proc/self/fd/%d", found.number());
    return ::chmod(itself, S_IRWXU) == 0;
}

// Gives a folder its mode back when not all of it could be removed.
class OpenedUp {
public:
    // True when the folder may be changed now and could not before.
    bool open(int folder) {
        struct stat facts;
        if (m_mode || ::fstat(folder, &facts) != 0 || ::fchmod(folder, facts.st_mode | S_IRWXU) != 0)
            return false;
        m_mode = facts.st_mode;
        return true;
    }
    void restore(int folder) const {
        if (m_mode)
            std::ignore = ::fchmod(folder, *m_mode);
    }

private:
    std::optional<mode_t> m_mode;
};

bool isForbidden(int code) {
    return code == EACCES || code == EPERM;
}

class CopiedRemoval {
public:
    CopiedRemoval(int folder, const char* name, const Manifest& manifest)
        : m_top(name), m_manifest(manifest), m_cursor(folder) {}

    Remains run() {
        while (m_next < m_manifest.size()) {
            const Copied& copied = m_manifest[m_next++];
            if (copied.kind == Copied::Kind::file)
                removeFile(copied);
            else if (copied.kind == Copied::Kind::folder)
                enter(copied);
            else if (!leave())
                break;
        }
        return m_remains;
    }

private:
    struct Level {
        const Copied* folder;
        bool isStillTheSame;
        OpenedUp opened;
    };

    const char* nameOf(const Copied& copied) const { return m_levels.empty() ? m_top : copied.name.c_str(); }

    void failed(int code) {
        if (code == ENOENT)
            return; // somebody else removed it
        if (!m_remains.code)
            m_remains.code = code;
    }

    bool isTheSame(const Copied& copied, const struct stat& facts) const {
        Stamp now = Stamp::of(facts);
        // To remove one name of a file is a change that its other names see.
        if (copied.hasOtherNames && m_lessNames.contains(now.inode))
            now.changed = copied.stamp.changed;
        return now == copied.stamp;
    }

    void removeFile(const Copied& copied) {
        const char* const name = nameOf(copied);
        struct stat facts;
        if (::fstatat(m_cursor.folder(), name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
            return failed(errno);
        if (!isTheSame(copied, facts)) {
            m_remains.hasOthers = true;
            return;
        }
        if (const int code = remove(name, 0))
            return failed(code);
        if (copied.hasOtherNames)
            m_lessNames.insert(facts.st_ino);
    }

    int remove(const char* name, int flags) {
        if (::unlinkat(m_cursor.folder(), name, flags) == 0)
            return 0;
        const int code = errno;
        // A read-only folder moves with its parent on one file system, so it does between two.
        if (isForbidden(code) && !m_levels.empty() && m_levels.back().opened.open(m_cursor.folder()))
            return ::unlinkat(m_cursor.folder(), name, flags) == 0 ? 0 : errno;
        return code;
    }

    void enter(const Copied& copied) {
        struct stat facts;
        const char* const name = nameOf(copied);
        int code = ::fstatat(m_cursor.folder(), name, &facts, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
        if (!code && (facts.st_dev != copied.stamp.device || facts.st_ino != copied.stamp.inode)) {
            m_remains.hasOthers = true;
            return skipFolder();
        }
        if (!code)
            code = m_cursor.enter(name);
        if (code) {
            failed(code);
            return skipFolder();
        }
        m_levels.push_back({&copied, Stamp::of(facts) == copied.stamp, {}});
    }

    void skipFolder() {
        for (size_t depth = 1; depth > 0; ++m_next) {
            if (m_manifest[m_next].kind == Copied::Kind::folder)
                ++depth;
            else if (m_manifest[m_next].kind == Copied::Kind::folderEnd)
                --depth;
        }
    }

    bool leave() {
        Descriptor left;
        if (const int code = m_cursor.leave(left)) {
            failed(code);
            return false; // what is above is another tree now
        }
        const Level level = m_levels.back();
        m_levels.pop_back();
        const int code = level.isStillTheSame ? remove(nameOf(*level.folder), AT_REMOVEDIR) : ENOTEMPTY;
        if (!code)
            return true;
        level.opened.restore(left.number());
        if (code == ENOTEMPTY)
            m_remains.hasOthers = true;
        else
            failed(code);
        return true;
    }

    const char* m_top;
    const Manifest& m_manifest;
    size_t m_next = 0;
    FolderCursor m_cursor;
    std::vector<Level> m_levels;
    std::unordered_set<uint64_t> m_lessNames; // files of several names that have lost one here
    Remains m_remains;
};

class TreeRemoval {
public:
    explicit TreeRemoval(int folder) : m_cursor(folder) {}

    int run(const char* name) {
        remove({name, DT_UNKNOWN});
        while (!m_levels.empty()) {
            Level& level = m_levels.back();
            if (level.next < level.entries.size())
                remove(level.entries[level.next++]);
            else if (!leave())
                break;
        }
        return m_code;
    }

private:
    struct Level {
        std::string name;
        std::vector<Entry> entries;
        size_t next = 0;
    };

    void failed(int code) {
        if (!m_code && code != ENOENT)
            m_code = code;
    }

    int unlink(const char* name, int flags) {
        if (::unlinkat(m_cursor.folder(), name, flags) == 0)
            return 0;
        const int code = errno;
        // In what is removed anyway, modes protect nothing.
        if (isForbidden(code) && !m_levels.empty() && ::fchmod(m_cursor.folder(), S_IRWXU) == 0)
            return ::unlinkat(m_cursor.folder(), name, flags) == 0 ? 0 : errno;
        return code;
    }

    void remove(const Entry& entry) {
        const char* const name = entry.name.c_str();
        if (entry.type != DT_DIR) {
            const int code = unlink(name, 0);
            if (code != EISDIR)
                return failed(code);
        }
        int code = m_cursor.enter(name);
        if (code == EACCES && openUp(m_cursor.folder(), name))
            code = m_cursor.enter(name);
        if (code)
            return failed(code);
        Level level{entry.name, {}};
        failed(listEntries(m_cursor.folder(), level.entries));
        m_levels.push_back(std::move(level));
    }

    bool leave() {
        Descriptor left;
        if (const int code = m_cursor.leave(left)) {
            failed(code);
            return false; // what is above is another tree now
        }
        const std::string name = std::move(m_levels.back().name);
        m_levels.pop_back();
        failed(unlink(name.c_str(), AT_REMOVEDIR));
        return true;
    }

    FolderCursor m_cursor;
    std::vector<Level> m_levels;
    int m_code = 0;
};

} // namespace

int removeTree(int folder, const char* name) {
    return TreeRemoval(folder).run(name);
}

Remains removeCopied(int folder, const char* name, const Manifest& manifest) {
    return CopiedRemoval(folder, name, manifest).run();
}

} // namespace lumbra::files
