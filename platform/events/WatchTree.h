// The folders that are looked after, as a tree of names: which folder a watch belongs to, and where that folder is now.
// A folder that is renamed is one node that gets another parent; nothing below it is touched. Pure bookkeeping.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lumbra::events {

class WatchTree {
public:
    struct Folder;

    // Names a detached folder for as long as it is detached, and nothing afterwards.
    using Ticket = quint64;

    struct ByName {
        using is_transparent = void;
        template <typename A, typename B>
        bool operator()(const A& a, const B& b) const {
            return nameOf(a) < nameOf(b);
        }

    private:
        static std::string_view nameOf(const std::unique_ptr<Folder>& folder) { return folder->name; }
        static std::string_view nameOf(std::string_view name) { return name; }
    };

    struct Folder {
        std::string name; // a root's is its whole path
        Folder* parent = nullptr;
        std::set<std::unique_ptr<Folder>, ByName> children;
        int watch = -1;    // -1 for a folder that is polled
        quint32 visit = 0; // the last walk that came by
        Ticket ticket = 0; // while detached
        enum class Standing : quint8 { root, inTree, detached, removed } standing = Standing::inTree;
    };

    WatchTree() = default;
    ~WatchTree();
    Q_DISABLE_COPY_MOVE(WatchTree)

    Folder& addRoot(const std::string& path);
    Folder& add(Folder& parent, std::string_view name);

    Folder* find(int watch) const;
    Folder* child(const Folder& parent, std::string_view name) const;
    size_t watchCount() const { return m_byWatch.size(); }

    // A folder's one watch; -1 takes it away.
    void setWatch(Folder& folder, int watch);

    // Absent for a folder that stands in no tree.
    std::optional<std::string> path(const Folder& folder) const;

    static bool isAtOrBelow(const Folder& folder, const Folder& ancestor);

    // Takes a folder with all below it out of the tree, to be attached elsewhere or removed. It keeps its watches.
    Ticket detach(Folder& folder);
    Folder* detached(Ticket ticket) const;

    // Puts a folder, detached or not, under a parent that is not below it. The name must be free there.
    void attach(Folder& folder, Folder& parent, std::string_view name);

    // Takes the folder and all below it out for good; `visit` is called with each before its watch is forgotten. They
    // stay in memory, marked as removed, until `bury`, for work that still holds a pointer to one.
    template <typename Visit>
    void remove(Folder& folder, Visit visit) {
        for (const size_t first = unhook(folder); const auto& gone : std::span(m_removed).subspan(first)) {
            visit(*gone);
            setWatch(*gone, -1);
        }
    }
    void bury() { m_removed.clear(); }

private:
    std::unique_ptr<Folder> release(Folder& folder);
    size_t unhook(Folder& folder);

    std::vector<std::unique_ptr<Folder>> m_roots;
    std::unordered_map<Ticket, std::unique_ptr<Folder>> m_detached;
    std::vector<std::unique_ptr<Folder>> m_removed;
    Ticket m_lastTicket = 0;
    std::unordered_map<int, Folder*> m_byWatch;
};

} // namespace lumbra::events
