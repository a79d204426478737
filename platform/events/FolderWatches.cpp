// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderWatches.h"

#include "FolderEntries.h"

#include <QByteArrayView>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace lumbra::events {

namespace {

// So many folders of a walk between two looks at the kernel's queue, which must not run over meanwhile.
constexpr size_t foldersBetweenTakes = 32;

// An event is in the queue at most so long after its change shows on disk, unless the machine stands still.
constexpr std::chrono::milliseconds queueingTime{100};

bool isFolder(int descriptor, const char* name, unsigned char type) {
    if (type != DT_UNKNOWN)
        return type == DT_DIR;
    struct stat status;
    return ::fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::string childPath(const std::string& folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path += folder;
    if (!path.ends_with('/'))
        path += '/';
    path += name;
    return path;
}

FolderWatches::FolderWatches(Enters enters, size_t watchLimit, const std::atomic<bool>& stopping)
    : m_enters(std::move(enters)), m_watchLimit(watchLimit), m_stopping(stopping) {}

bool FolderWatches::enters(std::string_view name) const {
    // Nothing below a name that is not UTF-8 has a location.
    return QByteArrayView(name.data(), qsizetype(name.size())).isValidUtf8() && m_enters(name);
}

Inotify::Result FolderWatches::add(const std::string& path, int& watch) {
    // Whether it succeeds or not, it speaks of the disk as it is now, which may be ahead of the events.
    unsettle();
    const auto result = m_inotify.add(path, watch);
    if (result != Inotify::Result::watching || m_watchLimit == 0 || m_tree.watchCount() < m_watchLimit
        || m_tree.find(watch))
        return result;
    m_inotify.remove(watch);
    return Inotify::Result::noSpace;
}

void FolderWatches::unsettle() {
    m_settled = false;
    m_lastAsked = std::chrono::steady_clock::now();
}

void FolderWatches::settle() {
    if (std::chrono::steady_clock::now() - m_lastAsked > queueingTime)
        m_settled = true;
}

FolderWatches::Folder* FolderWatches::enterRoot(const std::string& path) {
    int watch = -1;
    auto result = add(path, watch);
    if (Folder* known = result == Inotify::Result::watching ? m_tree.find(watch) : nullptr) {
        // A root inside another is a tree of its own. The very folder of another root can only be polled.
        if (known->standing == Folder::Standing::root) {
            result = Inotify::Result::noSpace;
        } else {
            forget(*known);
            result = add(path, watch);
        }
    }
    if (result == Inotify::Result::failed)
        return nullptr;
    Folder& root = m_tree.addRoot(path);
    if (result == Inotify::Result::watching)
        m_tree.setWatch(root, watch);
    walk(root);
    return &root;
}

FolderWatches::Entered FolderWatches::enter(Folder& parent, std::string_view name) {
    const auto parentPath = m_tree.path(parent);
    if (!parentPath)
        return {};
    int watch = -1;
    const auto result = add(childPath(*parentPath, name), watch);
    Folder* there = m_tree.child(parent, name);
    if (result == Inotify::Result::failed)
        return {}; // gone or moved on; what the tree has there goes when its own event comes
    if (result == Inotify::Result::noSpace) {
        if (!there) {
            there = &m_tree.add(parent, name);
            m_pictures[there];
            return {there, true};
        }
        if (there->watch < 0)
            return {there, false};
        // Another folder took its place. Its watch comes free.
        forget(*there);
        return enter(parent, name);
    }

    if (Folder* known = m_tree.find(watch)) {
        if (known == there)
            return {there, false};
        // Another root inside this one keeps its own tree; and a folder can be mounted inside itself.
        if (known->standing == Folder::Standing::root || WatchTree::isAtOrBelow(parent, *known))
            return {};
        m_tree.detach(*known); // it may stand below what it replaces
        if (there)
            forget(*there);
        m_tree.attach(*known, parent, name);
        return {known, true};
    }
    if (there && there->watch >= 0) {
        forget(*there);
        there = nullptr;
    }
    if (there)
        m_pictures.erase(there);
    else
        there = &m_tree.add(parent, name);
    m_tree.setWatch(*there, watch);
    return {there, true};
}

void FolderWatches::walk(Folder& top) {
    std::vector<Folder*> waiting{&top};
    while (!waiting.empty() && !m_stopping) {
        Folder& folder = *waiting.back();
        waiting.pop_back();
        // A folder can be moved or removed by what is found after it was put here; `removed` ones are still in memory.
        const auto path = m_tree.path(folder);
        if (!path)
            continue;
        folder.visit = m_visit;
        if (++m_walked % foldersBetweenTakes == 0)
            m_inotify.take();
        for (const std::string& name : subfolders(folder, *path))
            if (const auto entered = enter(folder, name); entered.folder)
                waiting.push_back(entered.folder);
    }
}

std::vector<std::string> FolderWatches::subfolders(Folder& folder, const std::string& path) {
    std::vector<std::string> names;
    if (folder.watch < 0) {
        auto& picture = m_pictures[&folder] = FolderPicture::take(path);
        names = picture.folders();
        std::erase_if(names, [this](const std::string& name) { return !enters(name); });
        return names;
    }
    forEachEntry(path, [&](int descriptor, const char* name, unsigned char type) {
        if (isFolder(descriptor, name, type) && enters(name))
            names.emplace_back(name);
    });
    return names;
}

void FolderWatches::walkAgain(Folder& root) {
    ++m_visit;
    walk(root);
    if (m_stopping)
        return;
    std::vector<Folder*> waiting{&root};
    std::vector<Folder*> gone;
    while (!waiting.empty()) {
        const Folder& folder = *waiting.back();
        waiting.pop_back();
        for (const auto& child : folder.children)
            (child->visit == m_visit ? waiting : gone).push_back(child.get());
    }
    for (Folder* folder : gone)
        forget(*folder);
}

void FolderWatches::forget(Folder& folder) {
    m_tree.remove(folder, [this](Folder& gone) {
        if (gone.watch >= 0)
            m_inotify.remove(gone.watch);
        else
            m_pictures.erase(&gone);
    });
}

std::vector<FolderWatches::Folder*> FolderWatches::polled() const {
    std::vector<Folder*> folders;
    folders.reserve(m_pictures.size());
    for (const auto& [folder, picture] : m_pictures)
        folders.push_back(folder);
    return folders;
}

Inotify::Result FolderWatches::watchPolled(Folder& folder, const std::string& path) {
    int watch = -1;
    const auto result = add(path, watch);
    if (result == Inotify::Result::watching && !m_tree.find(watch))
        m_tree.setWatch(folder, watch);
    return result;
}

std::vector<FolderPicture::Difference> FolderWatches::replacePicture(Folder& folder, const std::string& path) {
    const auto held = m_pictures.find(&folder);
    if (held == m_pictures.end())
        return {};
    auto now = FolderPicture::take(path);
    auto differences = held->second.differencesTo(now);
    if (folder.watch < 0)
        held->second = std::move(now);
    else
        m_pictures.erase(held);
    return differences;
}

} // namespace lumbra::events
