// SPDX-License-Identifier: GPL-3.0-or-later
#include "Inotify.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace lumbra::events {

namespace {

// ATTRIB is how a star that another process sets arrives, MODIFY how a truncation does.
constexpr quint32 watchedEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_MODIFY
                                  | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr quint32 watchOptions = IN_ONLYDIR | IN_DONT_FOLLOW | IN_EXCL_UNLINK;

constexpr size_t chunkSize = 256 * 1024;

// What a burst leaves allocated.
constexpr size_t restingMemory = 1024 * 1024;

// Beyond this the kernel may drop events: an overflow costs a look at the whole tree, endless memory costs the process.
constexpr size_t mostInMemory = 64 * 1024 * 1024;

} // namespace

bool Inotify::open() {
    if (!m_queue)
        m_queue = Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    return bool(m_queue);
}

Inotify::Result Inotify::add(const std::string& folder, int& watch) {
    if (!open())
        return Result::noSpace;
    watch = ::inotify_add_watch(fd(), folder.c_str(), watchedEvents | watchOptions);
    if (watch >= 0)
        return Result::watching;
    return errno == ENOSPC || errno == ENOMEM ? Result::noSpace : Result::failed;
}

void Inotify::remove(int watch) {
    // Fails when the folder is gone already, and the watch with it.
    ::inotify_rm_watch(fd(), watch);
}

bool Inotify::take() {
    if (!m_queue)
        return false;
    if (m_read == m_bytes.size()) {
        m_bytes.clear();
        m_read = 0;
        if (m_bytes.capacity() > restingMemory)
            m_bytes.shrink_to_fit();
    }
    if (m_bytes.size() - m_read > mostInMemory)
        return false;
    if (!m_chunk)
        m_chunk = std::make_unique_for_overwrite<char[]>(chunkSize);
    const ssize_t count = ::read(fd(), m_chunk.get(), chunkSize);
    if (count <= 0)
        return false;
    m_bytes.insert(m_bytes.end(), m_chunk.get(), m_chunk.get() + count);
    return true;
}

bool Inotify::next(Event& event) {
    if (!hasNext())
        return false;
    inotify_event head;
    std::memcpy(&head, m_bytes.data() + m_read, sizeof head);
    event.watch = head.wd;
    event.mask = head.mask;
    event.cookie = head.cookie;
    // The name is padded with NULs.
    const char* name = m_bytes.data() + m_read + sizeof head;
    event.name.assign(name, ::strnlen(name, head.len));
    m_read += sizeof head + head.len;
    return true;
}

} // namespace lumbra::events
