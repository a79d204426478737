// SPDX-License-Identifier: GPL-3.0-or-later
#include "Resolver.h"

#include "Scanner.h"

#include <QHash>
#include <QSet>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace lumbra::Resolver {

namespace {

constexpr int walkers = 2;

// What is true of all entries of one folder, found out once a batch: it costs a look at each of its parents.
struct Place {
    Location folder; // canonical
    std::optional<Location> root;
    bool isShown = false; // a walk of the root would come by
};

class Resolution {
public:
    Resolution(const QList<Location>& roots, const KnownFolder& library, const AssetIndex& index)
        : m_roots(roots.begin(), roots.end()), m_index(index), m_holders{library} {
        for (const Location& root : roots)
            if (!root.isAtOrBelow(library.path()))
                m_holders.emplace_back(root);
    }

    void take(const FileEvent& event);
    AssetIndex::Changes finish();

private:
    const Place& placeOf(const Location& folder);
    void look(const Location& path, quint32 flags);
    void lookAtFolder(const Location& path, quint32 flags);
    void lookAtStray(const Location& path);
    void compare(const Location& path);
    void reportDifference(const AssetIndex& found, const Location& below);
    bool knowsBelow(const Location& path) const { return !m_index.foldersUnder(path).isEmpty(); }

    const QSet<Location> m_roots;
    const AssetIndex& m_index;
    std::vector<KnownFolder> m_holders; // the library first
    QHash<Location, Place> m_places;
    QSet<Location> m_seen;
    AssetIndex::Changes m_changes;
};

bool isHidden(std::string_view name) {
    return name.starts_with('.') || Scanner::isPrunedName(name);
}

const Place& Resolution::placeOf(const Location& folder) {
    const auto known = m_places.constFind(folder);
    if (known != m_places.cend())
        return *known;
    Place place{folder.canonical(), std::nullopt, true};
    // Up to the nearest root; the path of a deleted file is walked up just the same.
    for (Location step = place.folder;; step = step.parent()) {
        if (m_roots.contains(step)) {
            place.root = step;
            break;
        }
        if (step.path().size() <= 1)
            break;
        place.isShown = place.isShown && !Scanner::isInvisibleFolder(step.lastComponent());
    }
    return *m_places.insert(folder, place);
}

void Resolution::take(const FileEvent& event) {
    // The first event of a path counts, and the others bring nothing new: the disk is asked for the present.
    if (m_seen.contains(event.path))
        return;
    m_seen.insert(event.path);

    const Place place = placeOf(event.path.parent());
    const Location path = place.folder.child(event.path.lastComponent());
    if (event.flags & FileEvent::mustScan)
        return compare(path);
    if (m_roots.contains(path))
        return look(path, event.flags);
    if (!place.root)
        return lookAtStray(path);
    if (place.isShown && !isHidden(path.lastComponent()))
        look(path, event.flags);
}

void Resolution::look(const Location& path, quint32 flags) {
    struct stat status;
    if (::lstat(path.path().constData(), &status) != 0) {
        // Anything else, as a folder that may not be entered, does not prove that it has gone.
        if (errno == ENOENT || errno == ENOTDIR)
            m_changes.gone.append(path);
        return;
    }
    if (S_ISDIR(status.st_mode))
        return lookAtFolder(path, flags);
    // A file in the place of a folder ends all that was below; a link or a pipe in the place of a file ends the file.
    if (knowsBelow(path) || (!S_ISREG(status.st_mode) && m_index.contains(path)))
        m_changes.gone.append(path);
    if (const auto asset = Asset::read(path))
        m_changes.assets.append(*asset);
}

void Resolution::lookAtFolder(const Location& path, quint32 flags) {
    const bool isEntered = m_roots.contains(path) || !Scanner::isPackageName(path.lastComponent());
    // Other events of folders tell nothing: what happens to their files arrives by itself.
    if (!isEntered || !(flags & (FileEvent::created | FileEvent::renamed))) {
        if (m_index.contains(path))
            m_changes.gone.append(path); // it was a file
        return;
    }
    // It may have taken another's place, so it is told as a whole. What the index knows of it would not do to find out
    // what to forget: a batch before this one may be about to make more known.
    m_changes.gone.append(path);
    const AssetIndex found = Scanner::index({path}, 1);
    for (const auto& folder : found.folders())
        for (size_t i = 0; i < folder->size(); ++i)
            m_changes.assets.append(folder->assetAt(i));
}

// What was a project and is none when the batch is resolved, since it was removed or became a file or a link.
void Resolution::lookAtStray(const Location& path) {
    const Location& library = m_holders.front().path();
    const bool isKnown = m_index.contains(path) || knowsBelow(path);
    // A batch before this one may be about to make it known.
    if (!path.isAtOrBelow(library) || !(isKnown || path.parent() == library))
        return;
    struct stat status;
    const bool isThere = ::lstat(path.path().constData(), &status) == 0;
    if (isThere ? isKnown && !S_ISDIR(status.st_mode) : errno == ENOENT || errno == ENOTDIR)
        m_changes.gone.append(path);
}

// Everything at or below the path may have changed unseen.
void Resolution::compare(const Location& path) {
    QList<Location> trees;
    for (const Location& root : m_roots)
        if (root.isAtOrBelow(path))
            trees.append(root);
    if (!m_roots.contains(path)) {
        const Place place = placeOf(path.parent());
        if (place.root && place.isShown && !Scanner::isInvisibleFolder(path.lastComponent()))
            trees = {path};
    }
    // A root inside another is walked with it.
    QList<Location> outermost;
    for (const Location& tree : trees)
        if (std::ranges::none_of(trees,
                                 [&](const Location& other) { return other != tree && tree.isAtOrBelow(other); }))
            outermost.append(tree);
    reportDifference(Scanner::index(outermost, walkers), path);
}

// What was found below the folder that is new or different, and what the index has there that was not found.
void Resolution::reportDifference(const AssetIndex& found, const Location& below) {
    const auto known = m_index.foldersUnder(below);
    const auto present = found.foldersUnder(below);
    auto before = known.begin();
    auto now = present.begin();
    const auto forget = [this](const AssetIndex::Folder& folder, size_t position) {
        m_changes.gone.append(folder.assetAt(position).url);
    };
    const auto add = [this](const AssetIndex::Folder& folder, size_t position) {
        m_changes.assets.append(folder.assetAt(position));
    };
    // Both sides are in order of paths, and each folder in order of names.
    while (before != known.end() || now != present.end()) {
        const bool isKnown = now == present.end() || (before != known.end() && (*before)->path() <= (*now)->path());
        const bool isPresent = before == known.end() || (now != present.end() && (*now)->path() <= (*before)->path());
        const size_t knownCount = isKnown ? (*before)->size() : 0;
        const size_t presentCount = isPresent ? (*now)->size() : 0;
        for (size_t b = 0, n = 0; b < knownCount || n < presentCount;) {
            const int order = b == knownCount     ? 1
                              : n == presentCount ? -1
                                                  : (*before)->at(b).name.compare((*now)->at(n).name);
            if (order < 0)
                forget(**before, b);
            else if (order > 0 || (*before)->assetAt(b) != (*now)->assetAt(n))
                add(**now, n);
            b += order <= 0 ? 1 : 0;
            n += order >= 0 ? 1 : 0;
        }
        before += isKnown ? 1 : 0;
        now += isPresent ? 1 : 0;
    }
}

AssetIndex::Changes Resolution::finish() {
    for (const KnownFolder& holder : m_holders)
        if (!holder.isStillThere())
            m_changes.gone.removeIf([&](const Location& path) { return path.isAtOrBelow(holder.path()); });
    return std::move(m_changes);
}

} // namespace

AssetIndex::Changes resolve(const QList<FileEvent>& events, const QList<Location>& roots, const KnownFolder& library,
                            const AssetIndex& index) {
    Resolution resolution(roots, library, index);
    for (const FileEvent& event : events)
        resolution.take(event);
    return resolution.finish();
}

QList<FileEvent> merged(const QList<FileEvent>& events) {
    QList<FileEvent> result;
    QHash<Location, qsizetype> places;
    for (const FileEvent& event : events) {
        const auto known = places.constFind(event.path);
        if (known != places.cend()) {
            result[*known].flags |= event.flags;
        } else {
            places.insert(event.path, result.size());
            result.append(event);
        }
    }
    return result;
}

} // namespace lumbra::Resolver
