// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderPoll.h"

namespace lumbra::events {

namespace {

constexpr std::chrono::seconds interval{2};

// A look at very many folders may take this share of one processor at most.
constexpr int restPerWork = 20;

constexpr size_t foldersBetweenTakes = 32;

} // namespace

std::optional<FolderPoll::Clock::time_point> FolderPoll::due() const {
    return m_next;
}

void FolderPoll::lookIfDue() {
    const auto now = Clock::now();
    if (m_watches.polledCount() == 0)
        m_next.reset();
    else if (!m_next)
        m_next = now + interval; // their first pictures were taken just now
    else if (now >= *m_next) {
        look();
        const auto end = Clock::now();
        m_next = end + std::max<Clock::duration>(interval, restPerWork * (end - now));
    }
}

void FolderPoll::look() {
    bool isFull = false;
    size_t looked = 0;
    for (WatchTree::Folder* folder : m_watches.polled()) {
        if (m_stopping)
            return;
        if (++looked % foldersBetweenTakes == 0)
            m_watches.inotify().take();
        // Removed, or given a watch, by what was found before it; or on its way to another place.
        const auto path = m_watches.tree().path(*folder);
        if (!path)
            continue;
        if (!isFull)
            isFull = m_watches.watchPolled(*folder, *path) == Inotify::Result::noSpace;
        for (const auto& difference : m_watches.replacePicture(*folder, *path))
            report(*folder, *path, difference);
    }
}

void FolderPoll::report(WatchTree::Folder& folder, const std::string& path,
                        const FolderPicture::Difference& difference) {
    using Kind = FolderPicture::Difference::Kind;
    if (!QByteArrayView(difference.name.data(), qsizetype(difference.name.size())).isValidUtf8())
        return;
    const std::string changed = childPath(path, difference.name);
    if (difference.wasFolder)
        if (auto* child = m_watches.tree().child(folder, difference.name))
            m_watches.forget(*child);
    if (difference.isFolder) {
        if (m_watches.enters(difference.name))
            if (const auto entered = m_watches.enter(folder, difference.name); entered.folder)
                m_watches.walk(*entered.folder);
        m_batch.addTree(changed, FileEvent::created);
    } else if (difference.wasFolder) {
        m_batch.addTree(changed, difference.kind == Kind::appeared ? quint32(FileEvent::created) : 0);
    } else {
        m_batch.add(changed, difference.kind == Kind::appeared ? quint32(FileEvent::created) : 0);
    }
}

} // namespace lumbra::events
