// Real file systems for tests: a second one, small ones, and ones that lack something. What can't be had on a machine
// is absent, and the test says so and skips.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

namespace lumbra {

// A folder on a file system other than the temporary folder's.
class SecondDisk {
public:
    SecondDisk() : m_folder(QStringLiteral("/dev/shm/lumbra-test-XXXXXX")) {}

    bool isThere() const {
        struct stat here;
        struct stat there;
        return m_folder.isValid() && ::stat(m_folder.path().toUtf8().constData(), &there) == 0
               && ::stat(QDir::tempPath().toUtf8().constData(), &here) == 0 && here.st_dev != there.st_dev;
    }
    Location path() const { return Location(QStringView(m_folder.path())); }

private:
    QTemporaryDir m_folder;
};

// Lets the process mount what only it sees, and what goes with it. To be called first in main, before any thread runs.
// Where it is refused, the file systems below are absent.
inline void enterOwnMounts() {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (::unshare(CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) != 0)
        return;
    if (user != 0) {
        const auto write = [](const char* path, const std::string& text) {
            const int file = ::open(path, O_WRONLY | O_CLOEXEC);
            if (file >= 0 && ::write(file, text.data(), text.size()) < 0)
                qWarning("cannot write %s", path);
            ::close(file);
        };
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
        write("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    }
    ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
}

class MountedDisk {
public:
    // The type as mount(8) takes it, such as "tmpfs" with "size=1m", or "ramfs", which holds no attributes.
    MountedDisk(const char* type, const char* options)
        : m_isMounted(::mount("lumbra-test", path().path().constData(), type, 0, options) == 0) {}
    ~MountedDisk() {
        if (m_isMounted)
            ::umount2(path().path().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(MountedDisk)

    bool isThere() const { return m_isMounted; }
    Location path() const { return Location(QStringView(m_folder.path())); }

private:
    QTemporaryDir m_folder;
    bool m_isMounted;
};

// Runs the function in a child process and hands its exit code back; -1 when it ended otherwise.
inline int inChild(const std::function<int()>& function) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(function());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

// Root is above all permissions only by its capabilities. Takes them from the calling process for good.
inline bool losePrivileges() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    return ::syscall(SYS_capset, &header, none) == 0;
}

} // namespace lumbra
