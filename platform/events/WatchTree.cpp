// SPDX-License-Identifier: GPL-3.0-or-later
#include "WatchTree.h"

#include <algorithm>

namespace lumbra::events {

using Standing = WatchTree::Folder::Standing;

WatchTree::~WatchTree() {
    // Level by level: a chain of owners thousands of folders deep would be destroyed by recursion.
    while (!m_roots.empty())
        unhook(*m_roots.back());
    while (!m_detached.empty())
        unhook(*m_detached.begin()->second);
}

WatchTree::Folder& WatchTree::addRoot(const std::string& path) {
    auto& root = *m_roots.emplace_back(std::make_unique<Folder>());
    root.name = path;
    root.standing = Standing::root;
    return root;
}

WatchTree::Folder& WatchTree::add(Folder& parent, std::string_view name) {
    auto folder = std::make_unique<Folder>();
    folder->name = name;
    folder->parent = &parent;
    return **parent.children.insert(std::move(folder)).first;
}

WatchTree::Folder* WatchTree::find(int watch) const {
    const auto found = m_byWatch.find(watch);
    return found == m_byWatch.end() ? nullptr : found->second;
}

WatchTree::Folder* WatchTree::child(const Folder& parent, std::string_view name) const {
    const auto found = parent.children.find(name);
    return found == parent.children.end() ? nullptr : found->get();
}

void WatchTree::setWatch(Folder& folder, int watch) {
    if (folder.watch >= 0)
        m_byWatch.erase(folder.watch);
    folder.watch = watch;
    if (watch >= 0)
        m_byWatch[watch] = &folder;
}

std::optional<std::string> WatchTree::path(const Folder& folder) const {
    std::vector<const Folder*> chain;
    size_t length = 0;
    for (const Folder* step = &folder; step; step = step->parent) {
        chain.push_back(step);
        length += step->name.size() + 1;
    }
    if (chain.back()->standing != Standing::root)
        return std::nullopt;
    std::string path;
    path.reserve(length);
    path = chain.back()->name;
    for (auto step = chain.rbegin() + 1; step != chain.rend(); ++step) {
        if (!path.ends_with('/'))
            path += '/';
        path += (*step)->name;
    }
    return path;
}

bool WatchTree::isAtOrBelow(const Folder& folder, const Folder& ancestor) {
    for (const Folder* step = &folder; step; step = step->parent)
        if (step == &ancestor)
            return true;
    return false;
}

WatchTree::Ticket WatchTree::detach(Folder& folder) {
    auto owned = release(folder);
    owned->parent = nullptr;
    owned->standing = Standing::detached;
    const Ticket ticket = owned->ticket = ++m_lastTicket;
    m_detached.emplace(ticket, std::move(owned));
    return ticket;
}

WatchTree::Folder* WatchTree::detached(Ticket ticket) const {
    const auto found = m_detached.find(ticket);
    return found == m_detached.end() ? nullptr : found->second.get();
}

void WatchTree::attach(Folder& folder, Folder& parent, std::string_view name) {
    auto owned = release(folder);
    owned->parent = &parent;
    owned->name = name;
    owned->standing = Standing::inTree;
    parent.children.insert(std::move(owned));
}

std::unique_ptr<WatchTree::Folder> WatchTree::release(Folder& folder) {
    if (folder.parent)
        return std::move(folder.parent->children.extract(folder.parent->children.find(folder.name)).value());
    if (folder.standing == Standing::detached)
        return std::move(m_detached.extract(folder.ticket).mapped());
    const auto root = std::ranges::find(m_roots, &folder, [](const auto& held) { return held.get(); });
    auto owned = std::move(*root);
    m_roots.erase(root);
    return owned;
}

size_t WatchTree::unhook(Folder& folder) {
    const size_t first = m_removed.size();
    m_removed.push_back(release(folder));
    for (size_t i = first; i < m_removed.size(); ++i) {
        Folder& gone = *m_removed[i];
        gone.parent = nullptr;
        gone.standing = Standing::removed;
        while (!gone.children.empty())
            m_removed.push_back(std::move(gone.children.extract(gone.children.begin()).value()));
    }
    return first;
}

} // namespace lumbra::events
