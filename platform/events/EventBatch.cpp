// SPDX-License-Identifier: GPL-3.0-or-later
#include "EventBatch.h"

namespace lumbra::events {

namespace {

// Everything strictly below a path sorts from "path/" up to "path0".
void eraseBelow(auto& container, const std::string& path) {
    const std::string stem = path == "/" ? std::string() : path;
    container.erase(container.lower_bound(stem + '/'), container.lower_bound(stem + '0'));
}

} // namespace

void EventBatch::add(const std::string& path, quint32 flags) {
    if (!isCovered(path))
        m_flags[path] |= flags;
}

void EventBatch::addTree(const std::string& path, quint32 flags) {
    if (isCovered(path))
        return;
    eraseBelow(m_flags, path);
    m_flags[path] |= flags;
    m_trees.insert(path);
}

void EventBatch::drop(const std::string& path) {
    eraseBelow(m_flags, path);
    m_flags.erase(path);
    // A tree without its path would hide later events.
    std::erase_if(m_trees, [this](const std::string& tree) { return !m_flags.contains(tree); });
}

QList<FileEvent> EventBatch::take() {
    QList<FileEvent> events;
    events.reserve(qsizetype(m_flags.size()));
    for (const auto& [path, flags] : m_flags)
        events.append({Location(QByteArray(path.data(), qsizetype(path.size()))), flags});
    m_flags.clear();
    m_trees.clear();
    return events;
}

// A tree inside a tree stays in the set when its path is erased, which does no harm: the outer one covers it.
bool EventBatch::isCovered(std::string_view path) const {
    if (m_trees.empty())
        return false;
    for (size_t slash = path.rfind('/'); slash != std::string_view::npos; slash = path.rfind('/', slash - 1)) {
        if (m_trees.contains(std::string(path.substr(0, std::max<size_t>(slash, 1)))))
            return true;
        if (slash == 0)
            break;
    }
    return false;
}

} // namespace lumbra::events
