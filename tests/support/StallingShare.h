// A file system of a few files that answers at first, and at a word never again, as a share whose server has gone: who
// asks it then waits in the kernel, where not even SIGKILL reaches.
//
// It is served by a process of its own, so that the end of the test is the end of all waiting. Needs the right to
// mount.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"
#include "support/TestHome.h"

#include <QByteArray>
#include <QList>

#include <dirent.h>
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

namespace lumbra {

class StallingShare {
public:
    using Files = QList<std::pair<QByteArray, QByteArray>>; // names and bytes

    StallingShare(const Location& folder, Files files) : m_folder(folder), m_files(std::move(files)) {
        void* const page = ::mmap(nullptr, sizeof(State), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_state = page == MAP_FAILED ? nullptr : new (page) State;
        const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
        if (!m_state || device < 0)
            return;
        const QByteArray options = "rootmode=40000,user_id=0,group_id=0,fd=" + QByteArray::number(device);
        m_isMounted =
            ::mount("lumbra-test", folder.path().constData(), "fuse", MS_NOSUID | MS_NODEV, options.constData()) == 0;
        if (m_isMounted && (m_server = ::fork()) == 0)
            serve(device);
        ::close(device);
    }
    ~StallingShare() {
        if (m_server > 0) {
            ::kill(m_server, SIGKILL); // which ends the connection, and everybody's waiting
            ::waitpid(m_server, nullptr, 0);
        }
        if (m_isMounted)
            ::umount2(m_folder.path().constData(), MNT_DETACH);
        if (m_state)
            ::munmap(m_state, sizeof(State));
    }
    Q_DISABLE_COPY_MOVE(StallingShare)

    bool isMounted() const { return m_isMounted && m_server > 0; }

    void stall() { m_state->isStalled = true; }

    // How often it was asked in vain.
    int asked() const { return m_state->asked; }

private:
    struct State {
        std::atomic<bool> isStalled = false;
        std::atomic<int> asked = 0;
    };

    static constexpr quint64 firstFile = 2; // 1 is the root

    // Between fork and the end nothing may take memory: a thread that is no more may hold the lock.
    [[noreturn]] void serve(int device) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        static char buffer[256 * 1024];
        for (;;) {
            const ssize_t size = ::read(device, buffer, sizeof buffer);
            if (size < ssize_t(sizeof(fuse_in_header))) {
                if (size < 0 && (errno == EINTR || errno == EAGAIN || errno == ENOENT))
                    continue;
                ::_exit(0);
            }
            fuse_in_header header;
            std::memcpy(&header, buffer, sizeof header);
            const bool wantsNone =
                header.opcode == FUSE_FORGET || header.opcode == FUSE_BATCH_FORGET || header.opcode == FUSE_INTERRUPT;
            if (wantsNone)
                continue;
            if (m_state->isStalled)
                ++m_state->asked;
            else
                answer(device, header, buffer + sizeof header);
        }
    }

    void answer(int device, const fuse_in_header& header, const char* given) const {
        const auto reply = [device, &header](int error, const void* bytes, size_t size) {
            fuse_out_header out{quint32(sizeof(fuse_out_header) + size), error, header.unique};
            iovec parts[] = {{&out, sizeof out}, {const_cast<void*>(bytes), size}};
            [[maybe_unused]] const auto written = ::writev(device, parts, size > 0 ? 2 : 1);
        };
        switch (header.opcode) {
        case FUSE_INIT: {
            fuse_init_out out{};
            out.major = FUSE_KERNEL_VERSION;
            out.minor = 31;
            out.max_write = 4096;
            out.max_background = 16;
            out.time_gran = 1;
            return reply(0, &out, sizeof out);
        }
        case FUSE_LOOKUP: {
            for (qsizetype i = 0; i < m_files.size(); ++i)
                if (m_files[i].first == given) {
                    fuse_entry_out out{};
                    out.nodeid = firstFile + quint64(i);
                    out.attr = attributes(out.nodeid);
                    return reply(0, &out, sizeof out);
                }
            return reply(-ENOENT, nullptr, 0);
        }
        case FUSE_GETATTR: {
            fuse_attr_out out{};
            out.attr = attributes(header.nodeid);
            return reply(0, &out, sizeof out);
        }
        case FUSE_OPEN:
        case FUSE_OPENDIR: {
            const fuse_open_out out{};
            return reply(0, &out, sizeof out);
        }
        case FUSE_READ: {
            fuse_read_in wish;
            std::memcpy(&wish, given, sizeof wish);
            const QByteArray& bytes = m_files[qsizetype(header.nodeid - firstFile)].second;
            const qsizetype begin = std::min(qsizetype(wish.offset), bytes.size());
            return reply(0, bytes.constData() + begin, size_t(std::min(qsizetype(wish.size), bytes.size() - begin)));
        }
        case FUSE_READDIR: {
            fuse_read_in wish;
            std::memcpy(&wish, given, sizeof wish);
            static char listing[64 * 1024];
            size_t used = 0;
            for (auto i = qsizetype(wish.offset); i < m_files.size(); ++i) {
                const QByteArray& name = m_files[i].first;
                const size_t room = FUSE_DIRENT_ALIGN(FUSE_NAME_OFFSET + size_t(name.size()));
                if (used + room > std::min(size_t(wish.size), sizeof listing))
                    break;
                fuse_dirent entry{};
                entry.ino = firstFile + quint64(i);
                entry.off = quint64(i + 1);
                entry.namelen = quint32(name.size());
                entry.type = DT_REG;
                std::memcpy(listing + used, &entry, FUSE_NAME_OFFSET);
                std::memcpy(listing + used + FUSE_NAME_OFFSET, name.constData(), size_t(name.size()));
                used += room;
            }
            return reply(0, listing, used);
        }
        case FUSE_FLUSH:
        case FUSE_RELEASE:
        case FUSE_RELEASEDIR:
        case FUSE_ACCESS:
            return reply(0, nullptr, 0);
        default:
            return reply(-ENOSYS, nullptr, 0);
        }
    }

    fuse_attr attributes(quint64 node) const {
        fuse_attr made{};
        made.ino = node;
        made.mode = node < firstFile ? S_IFDIR | 0755 : S_IFREG | 0644;
        made.nlink = 1;
        made.size = node < firstFile ? 0 : quint64(m_files[qsizetype(node - firstFile)].second.size());
        made.mtime = 1'700'000'000;
        made.blksize = 4096;
        return made;
    }

    const Location m_folder;
    const Files m_files;
    State* m_state = nullptr;
    bool m_isMounted = false;
    pid_t m_server = -1;
};

} // namespace lumbra
