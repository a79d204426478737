// The least that a walk with stars can cost: getdents64, statx and getxattrat for each file of a media kind, and
// nothing kept but sums. What the scanner is measured against.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace lumbra::bench {

class FloorWalk {
public:
    struct Sum {
        long files = 0;
        long stars = 0;
        long long bytes = 0;
        long long modified = 0;
    };

    static Sum run(const std::string& root, int workers) {
        FloorWalk walk;
        walk.m_waiting.push_back(root);
        {
            std::vector<std::jthread> helpers;
            for (int i = 1; i < workers; ++i)
                helpers.emplace_back([&walk] { walk.work(); });
            walk.work();
        }
        return walk.m_total;
    }

private:
    struct Entry { // as getdents64 fills it in
        uint64_t inode;
        int64_t offset;
        unsigned short length;
        unsigned char type;
        char name[1];
    };

    static long starOf(int folder, const char* name, char* value, size_t size) {
        struct {
            uint64_t value;
            uint32_t size;
            uint32_t flags;
        } arguments{reinterpret_cast<uint64_t>(value), uint32_t(size), 0};
        constexpr long getxattrat = 464;
        return ::syscall(getxattrat, folder, name, AT_SYMLINK_NOFOLLOW, "user.com.lumbra.starred", &arguments,
                         sizeof arguments);
    }

    void work() {
        std::vector<char> buffer(64 * 1024);
        std::vector<std::string> below;
        Sum sum;
        std::string path;
        while (take(path)) {
            for (bool more = true; more;) {
                below.clear();
                read(path, buffer, below, sum);
                more = !below.empty();
                if (more) {
                    path = std::move(below.back());
                    below.pop_back();
                }
                share(below);
            }
            const std::lock_guard lock(m_mutex);
            if (--m_busy == 0)
                m_changed.notify_all();
        }
        const std::lock_guard lock(m_mutex);
        m_total.files += sum.files;
        m_total.stars += sum.stars;
        m_total.bytes += sum.bytes;
        m_total.modified += sum.modified;
    }

    static void read(const std::string& path, std::vector<char>& buffer, std::vector<std::string>& below, Sum& sum) {
        const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
        if (folder < 0)
            return;
        for (;;) {
            const long filled = ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
            if (filled <= 0)
                break;
            for (long offset = 0; offset < filled;) {
                const auto* entry = reinterpret_cast<const Entry*>(buffer.data() + offset);
                const char* name = buffer.data() + offset + offsetof(Entry, name);
                offset += entry->length;
                if (name[0] == '.')
                    continue;
                if (entry->type == DT_DIR)
                    below.push_back(path + '/' + name);
                else if (entry->type == DT_REG && !std::string_view(name).ends_with(".lock"))
                    examine(folder, name, sum);
            }
        }
        ::close(folder);
    }

    static void examine(int folder, const char* name, Sum& sum) {
        struct statx facts;
        if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, STATX_TYPE | STATX_SIZE | STATX_MTIME,
                    &facts)
            != 0)
            return;
        char value[64];
        ++sum.files;
        sum.stars += starOf(folder, name, value, sizeof value) > 0;
        sum.bytes += static_cast<long long>(facts.stx_size);
        sum.modified += facts.stx_mtime.tv_sec;
    }

    bool take(std::string& path) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_busy == 0; });
        if (m_waiting.empty())
            return false;
        path = std::move(m_waiting.back());
        m_waiting.pop_back();
        ++m_busy;
        return true;
    }

    void share(std::vector<std::string>& folders) {
        if (folders.empty())
            return;
        const std::lock_guard lock(m_mutex);
        for (std::string& folder : folders)
            m_waiting.push_back(std::move(folder));
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_waiting;
    int m_busy = 0;
    Sum m_total;
};

} // namespace lumbra::bench
