// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChangeReader.h"

#include <sys/inotify.h>

#include <utility>

namespace lumbra::events {

namespace {

// The kernel queues both halves of a move at once; who waited this long waits for nothing.
constexpr std::chrono::milliseconds patience{100};

quint32 flagsOf(quint32 mask) {
    quint32 flags = 0;
    if (mask & IN_CREATE)
        flags |= FileEvent::created;
    if (mask & (IN_MOVED_FROM | IN_MOVED_TO))
        flags |= FileEvent::renamed;
    return flags;
}

bool isUtf8(const std::string& name) {
    return QByteArrayView(name.data(), qsizetype(name.size())).isValidUtf8();
}

} // namespace

bool ChangeReader::readAll(Clock::time_point deadline) {
    // Whatever happened before the end of the last reading has been read by now.
    if (std::exchange(m_hasReadAll, false))
        m_watches.settle();
    Inotify::Event event;
    for (;;) {
        const bool took = m_watches.inotify().take();
        bool any = false;
        while (m_watches.inotify().next(event)) {
            any = true;
            read(event);
            m_watches.tree().bury();
            if (Clock::now() > deadline)
                return false;
        }
        if (!took && !any)
            return m_hasReadAll = true;
    }
}

void ChangeReader::read(const Inotify::Event& event) {
    if (event.mask & IN_Q_OVERFLOW)
        return overflow();
    Folder* folder = m_watches.tree().find(event.watch);
    if (!folder)
        return; // an echo of a watch that was taken away
    if (event.name.empty())
        return readOwn(*folder, event.mask);
    if (!isUtf8(event.name))
        return;
    const auto parentPath = m_watches.tree().path(*folder);
    if (!parentPath) {
        // Inside a folder that is on its way. Where it arrives it is gone through, unless the tree is thought settled.
        m_watches.unsettle();
        return;
    }
    const std::string path = childPath(*parentPath, event.name);
    if (event.mask & IN_ISDIR)
        return readFolder(*folder, event, path);
    m_batch.add(path, flagsOf(event.mask));
    m_pace.note(path, event.mask);
}

void ChangeReader::readOwn(Folder& folder, quint32 mask) {
    if (folder.standing == Folder::Standing::root) {
        if (mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED))
            m_roots.lose(folder);
        else if (mask & IN_ATTRIB)
            m_batch.add(folder.name, 0);
    } else if (mask & IN_IGNORED) {
        // Deleted, which its parent reports; or unmounted, which takes nothing from the library.
        m_watches.forget(folder);
    }
}

void ChangeReader::readFolder(Folder& parent, const Inotify::Event& event, const std::string& path) {
    if (event.mask & IN_CREATE) {
        appear(parent, event.name);
    } else if (event.mask & IN_MOVED_FROM) {
        leave(parent, event);
    } else if (event.mask & IN_MOVED_TO) {
        arrive(parent, event);
    } else if (event.mask & IN_DELETE) {
        if (Folder* gone = m_watches.tree().child(parent, event.name))
            m_watches.forget(*gone);
    } else if (m_watches.tree().child(parent, event.name) || !appear(parent, event.name)) {
        return m_batch.add(path, 0);
    } else {
        // It could not be read before.
        return m_batch.addTree(path, FileEvent::created);
    }
    // The tree is reported after its watches are set, so whoever looks now misses nothing.
    m_batch.addTree(path, flagsOf(event.mask));
}

bool ChangeReader::appear(Folder& parent, const std::string& name) {
    if (!m_watches.enters(name))
        return false;
    // A folder that stands there already was gone through when it was found from above.
    const auto entered = m_watches.enter(parent, name);
    if (entered.isNew)
        m_watches.walk(*entered.folder);
    return entered.isNew;
}

void ChangeReader::leave(Folder& parent, const Inotify::Event& event) {
    if (Folder* folder = m_watches.tree().child(parent, event.name))
        m_moving[event.cookie] = {m_watches.tree().detach(*folder), Clock::now()};
    // Of two folders that are exchanged the one has arrived before the other leaves, and stays.
    if (!m_watches.isSettled())
        appear(parent, event.name);
}

void ChangeReader::arrive(Folder& parent, const Inotify::Event& event) {
    auto& tree = m_watches.tree();
    if (Folder* there = tree.child(parent, event.name)) {
        // An empty folder that was overwritten, or the other one of an exchange, or one that came later.
        m_watches.forget(*there);
        m_watches.unsettle();
    }
    const auto half = m_moving.extract(event.cookie);
    Folder* folder = half ? tree.detached(half.mapped().folder) : nullptr;
    if (!folder) {
        appear(parent, event.name);
    } else if (!m_watches.enters(event.name)) {
        m_watches.forget(*folder);
    } else {
        tree.attach(*folder, parent, event.name);
        if (m_watches.isSettled())
            return;
        if (const auto entered = m_watches.enter(parent, event.name); entered.folder)
            m_watches.walk(*entered.folder);
    }
}

// A folder that was found in the trees again by other means is no longer detached, and stays.
void ChangeReader::abandon(const Moving& move) {
    if (Folder* folder = m_watches.tree().detached(move.folder))
        m_watches.forget(*folder);
}

void ChangeReader::settleMoves() {
    const auto limit = Clock::now() - patience;
    std::erase_if(m_moving, [&](const auto& half) {
        const bool isOver = half.second.since <= limit;
        if (isOver)
            abandon(half.second);
        return isOver;
    });
}

std::optional<ChangeReader::Clock::time_point> ChangeReader::nextSettling() const {
    std::optional<Clock::time_point> next;
    for (const auto& [cookie, move] : m_moving)
        if (!next || move.since + patience < *next)
            next = move.since + patience;
    return next;
}

void ChangeReader::overflow() {
    ++m_overflows;
    // The second half of an open move may be among what was dropped.
    for (const auto& [cookie, move] : m_moving)
        abandon(move);
    m_moving.clear();
    m_roots.walkAgain();
}

} // namespace lumbra::events
