// The changed paths between two deliveries, each once. A folder whose whole content is in question makes the paths
// below it superfluous, so that deleting a folder of 1,000 files comes to one path.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileEvents.h"

#include <map>
#include <string>
#include <unordered_set>

namespace lumbra::events {

class EventBatch {
public:
    bool isEmpty() const { return m_flags.empty(); }

    // A path that comes again keeps every flag it ever came with: a folder that was created and then touched must still
    // be gone through.
    void add(const std::string& path, quint32 flags);

    // A folder that appeared, moved, left or must be compared: it stands for all that lies below.
    void addTree(const std::string& path, quint32 flags);

    // Forgets the path and everything below it.
    void drop(const std::string& path);

    // Sorted by path; the batch is empty afterwards.
    QList<FileEvent> take();

private:
    bool isCovered(std::string_view path) const;

    std::map<std::string, quint32, std::less<>> m_flags;
    std::unordered_set<std::string> m_trees;
};

} // namespace lumbra::events
