// SPDX-License-Identifier: GPL-3.0-or-later
#include "EventMirror.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <future>

namespace lumbra {

namespace {

void forget(EventMirror::View& view, const std::string& path) {
    view.erase(path);
    view.erase(view.lower_bound(path + '/'), view.lower_bound(path + '0'));
}

std::optional<EventMirror::Entry> entryAt(const std::string& path) {
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    char value[64];
    return EventMirror::Entry{status.st_size,
                              ::lgetxattr(path.c_str(), "user.com.lumbra.starred", value, sizeof value) >= 0};
}

bool writeFile(const char* path, const QByteArray& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    const bool written = file >= 0 && ::write(file, text.constData(), size_t(text.size())) == text.size();
    if (file >= 0)
        ::close(file);
    return written;
}

} // namespace

EventMirror::EventMirror(const QList<Location>& roots, FileEvents::Options options)
    : m_roots(roots), m_enters(options.enters) {
    std::promise<void> started;
    options.started = [&started] { started.set_value(); };
    m_events = std::make_unique<FileEvents>(roots, options, [this](QList<FileEvent> batch) {
        const std::lock_guard lock(m_mutex);
        m_batches.append(batch);
        m_waiting.push_back(std::move(batch));
        m_arrived.notify_all();
    });
    started.get_future().wait();
    m_view = truth();
    m_follower = std::jthread([this](const std::stop_token& stop) { follow(stop); });
}

EventMirror::~EventMirror() {
    m_events.reset();
}

void EventMirror::follow(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (m_arrived.wait(lock, stop, [this] { return !m_waiting.empty(); })) {
        const auto batch = m_waiting.front();
        m_waiting.pop_front();
        for (const FileEvent& event : batch)
            apply(event);
    }
}

void EventMirror::apply(const FileEvent& event) {
    const std::string path(event.path.view());
    // Nothing is known of a root that is not there.
    for (const Location& root : m_roots)
        if (event.path.isAtOrBelow(root) && !root.isFolder())
            return;
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            forget(m_view, path);
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        m_view.erase(path);
        if (!(event.flags & (FileEvent::created | FileEvent::renamed | FileEvent::mustScan)))
            return;
        forget(m_view, path);
        const bool isRoot = m_roots.contains(event.path);
        if (isRoot || m_enters(event.path.lastComponent()))
            scan(path, m_view);
        return;
    }
    forget(m_view, path);
    if (const auto entry = entryAt(path))
        m_view[path] = *entry;
}

void EventMirror::scan(const std::string& folder, View& into) const {
    DIR* stream = ::opendir(folder.c_str());
    if (!stream)
        return;
    while (const dirent* entry = ::readdir(stream)) {
        const std::string_view name(entry->d_name);
        if (name == "." || name == ".." || !QByteArrayView(entry->d_name).isValidUtf8())
            continue;
        const std::string path = folder + '/' + entry->d_name;
        if (entry->d_type == DT_DIR) {
            if (m_enters(name))
                scan(path, into);
        } else if (const auto found = entryAt(path)) {
            into[path] = *found;
        }
    }
    ::closedir(stream);
}

EventMirror::View EventMirror::truth() const {
    View found;
    for (const Location& root : m_roots)
        scan(std::string(root.view()), found);
    return found;
}

EventMirror::View EventMirror::view() const {
    const std::lock_guard lock(m_mutex);
    return m_view;
}

bool EventMirror::becomesTrue(double seconds) {
    QElapsedTimer clock;
    clock.start();
    View disk;
    View known;
    do {
        disk = truth();
        known = view();
        if (disk == known)
            return true;
        QThread::msleep(5);
    } while (clock.elapsed() < qint64(seconds * 1000));
    int shown = 0;
    for (const auto& [path, entry] : disk)
        if (!known.contains(path) && ++shown < 10)
            qWarning("missing: %s", path.c_str());
        else if (known.contains(path) && known[path] != entry && ++shown < 10)
            qWarning("stale: %s", path.c_str());
    for (const auto& [path, entry] : known)
        if (!disk.contains(path) && ++shown < 10)
            qWarning("not there: %s", path.c_str());
    return false;
}

QList<QList<FileEvent>> EventMirror::batches() const {
    const std::lock_guard lock(m_mutex);
    return m_batches;
}

bool EventMirror::reported(const Location& path, quint32 flags) const {
    const std::lock_guard lock(m_mutex);
    for (const auto& batch : m_batches)
        for (const FileEvent& event : batch)
            if (event.path == path && (event.flags & flags) == flags)
                return true;
    return false;
}

void EventMirror::forgetBatches() {
    const std::lock_guard lock(m_mutex);
    m_batches.clear();
}

std::optional<QByteArray> enterPrivateMounts() {
    const bool isRoot = ::geteuid() == 0;
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    if (::unshare(CLONE_NEWNS | (isRoot ? 0 : CLONE_NEWUSER)) != 0)
        return QByteArray("no namespace for mounts: ") + std::strerror(errno);
    if (!isRoot
        && !(writeFile("/proc/self/setgroups", "deny") && writeFile("/proc/self/uid_map", "0 " + user + " 1")
             && writeFile("/proc/self/gid_map", "0 " + group + " 1")))
        return QByteArray("no root in the user namespace: ") + std::strerror(errno);
    // What is mounted here stays here.
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return QByteArray("mounts stay shared: ") + std::strerror(errno);
    return std::nullopt;
}

bool runScript(const Location& folder, const QByteArray& script) {
    QProcess shell;
    shell.setWorkingDirectory(folder.toString());
    shell.setProcessChannelMode(QProcess::ForwardedChannels);
    shell.start(QStringLiteral("/bin/bash"), {QStringLiteral("-c"), QString::fromUtf8(script)});
    return shell.waitForFinished(60'000) && shell.exitStatus() == QProcess::NormalExit && shell.exitCode() == 0;
}

} // namespace lumbra
