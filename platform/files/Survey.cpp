// SPDX-License-Identifier: GPL-3.0-or-later
#include "Survey.h"

#include "Failure.h"
#include "FolderCursor.h"

#include <sys/stat.h>

#include <cerrno>

namespace lumbra::files {

namespace {

class Surveyor {
public:
    Surveyor(int folder, const ProgressMeter& meter) : m_cursor(folder), m_meter(meter) {}

    Survey run(const char* name) {
        look(name);
        while (!m_levels.empty()) {
            Level& level = m_levels.back();
            if (level.next < level.entries.size()) {
                const std::string entry = std::move(level.entries[level.next++].name);
                look(entry.c_str());
                continue;
            }
            m_levels.pop_back();
            Descriptor left;
            if (const int code = m_cursor.leave(left))
                throw Failure(code, name);
        }
        return m_sum;
    }

private:
    struct Level {
        std::vector<Entry> entries;
        size_t next = 0;
    };

    void look(const char* name) {
        struct stat facts;
        if (::fstatat(m_cursor.folder(), name, &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno == ENOENT && !m_levels.empty())
                return; // removed while it is looked through
            throw Failure(errno, name);
        }
        if (m_levels.empty())
            m_sum.type = typeOf(facts.st_mode);
        if (S_ISDIR(facts.st_mode))
            return enter(name);
        if (!S_ISREG(facts.st_mode) && !S_ISLNK(facts.st_mode))
            throw Failure(EOPNOTSUPP, name, QStringLiteral("it is neither a file nor a folder"));
        ++m_sum.files;
        if (S_ISREG(facts.st_mode))
            m_sum.bytes += facts.st_size;
    }

    void enter(const char* name) {
        m_meter.stopIfAsked();
        int code = m_cursor.enter(name);
        if (code == ENOENT && !m_levels.empty())
            return;
        if (!code)
            code = listEntries(m_cursor.folder(), m_levels.emplace_back().entries);
        if (code)
            throw Failure(code, name);
    }

    FolderCursor m_cursor;
    const ProgressMeter& m_meter;
    std::vector<Level> m_levels;
    Survey m_sum;
};

} // namespace

Survey survey(int folder, const char* name, const ProgressMeter& meter) {
    return Surveyor(folder, meter).run(name);
}

} // namespace lumbra::files
