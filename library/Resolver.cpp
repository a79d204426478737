// SPDX-License-Identifier: GPL-3.0-or-later
#include "Resolver.h"

#include "Scanner.h"

#include <QSet>

#include <sys/stat.h>

namespace lumbra::Resolver {

namespace {

class Resolution {
public:
    Resolution(const QList<Location>& roots, const Location& libraryRoot, const AssetIndex& index)
        : m_libraryRoot(libraryRoot), m_index(index) {
        // Once a batch and not once an event: it asks the disk for each component.
        for (const Location& root : roots)
            m_roots.append({root, root.canonical()});
    }

    void take(const FileEvent& event) {
        if (m_seen.contains(event.path))
            return;
        m_seen.insert(event.path);
        if (event.flags & FileEvent::mustScan) {
            compareAll(event.path);
            return;
        }
        const auto root = rootOf(event.path);
        if (!root) {
            forgetProject(event.path);
            return;
        }
        if (!Scanner::isInsidePruned(event.path, root->canonical))
            look(event, *root);
    }

    AssetIndex::Changes changes() && { return std::move(m_changes); }

private:
    struct Root {
        Location given;
        Location canonical;
    };

    std::optional<Root> rootOf(const Location& path) const {
        // What an event names is canonical below its root already; only a path that came another way costs the disk.
        for (const Root& root : m_roots)
            if (path.isAtOrBelow(root.canonical))
                return root;
        const Location resolved = path.canonical();
        for (const Root& root : m_roots)
            if (resolved.isAtOrBelow(root.canonical))
                return root;
        return std::nullopt;
    }

    // What stood directly in the library and was removed or renamed is no project any more when the batch is resolved.
    void forgetProject(const Location& path) {
        if (path.parent() == m_libraryRoot && !path.exists() && m_libraryRoot.isFolder())
            m_changes.gone.append(path);
    }

    // False while the place that held the path is itself away.
    bool isRootPresent(const Root& root) const {
        return (root.canonical.isAtOrBelow(m_libraryRoot) ? m_libraryRoot : root.canonical).isFolder();
    }

    void look(const FileEvent& event, const Root& root) {
        struct stat status;
        if (::lstat(event.path.path().constData(), &status) != 0) {
            if (isRootPresent(root))
                m_changes.gone.append(event.path);
            return;
        }
        if (S_ISDIR(status.st_mode)) {
            // Other events of folders tell nothing: what happens to their files arrives by itself.
            if (event.flags & (FileEvent::created | FileEvent::renamed))
                Scanner::walk(event.path, [this](const Asset& asset) { m_changes.assets.append(asset); });
            return;
        }
        if (const auto asset = Asset::read(event.path))
            m_changes.assets.append(*asset);
        else if (m_index.contains(event.path) && !S_ISREG(status.st_mode))
            m_changes.gone.append(event.path); // a link or a pipe took the file's place
    }

    // Everything at or below the path may have changed unseen.
    void compareAll(const Location& path) {
        for (const Root& root : m_roots) {
            if (root.canonical.isAtOrBelow(path))
                compare(root.given, root);
            else if (path.isAtOrBelow(root.canonical) && !Scanner::isInsidePruned(path, root.canonical))
                compare(path, root);
        }
    }

    void compare(const Location& folder, const Root& root) {
        if (!isRootPresent(root))
            return;
        QSet<Location> found;
        Scanner::walk(folder, [&](const Asset& asset) {
            found.insert(asset.url);
            if (m_index.find(asset.url) != asset)
                m_changes.assets.append(asset);
        });
        for (const auto& holder : m_index.foldersUnder(folder))
            for (size_t i = 0; i < holder->size(); ++i)
                if (const Location url = holder->assetAt(i).url; !found.contains(url))
                    m_changes.gone.append(url);
    }

    const Location m_libraryRoot;
    const AssetIndex& m_index;
    QList<Root> m_roots;
    QSet<Location> m_seen;
    AssetIndex::Changes m_changes;
};

} // namespace

AssetIndex::Changes resolve(const QList<FileEvent>& events, const QList<Location>& roots, const Location& libraryRoot,
                            const AssetIndex& index) {
    Resolution resolution(roots, libraryRoot, index);
    for (const FileEvent& event : events)
        resolution.take(event);
    return std::move(resolution).changes();
}

} // namespace lumbra::Resolver
