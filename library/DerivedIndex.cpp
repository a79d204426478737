// SPDX-License-Identifier: GPL-3.0-or-later
#include "DerivedIndex.h"

#include "platform/Log.h"

#include <QElapsedTimer>

#include <algorithm>
#include <array>
#include <unordered_map>

namespace lumbra {

namespace {

// An asset by its place: in its folder while that is gone through, then in the list of those that stayed. Only these
// become Assets, which have a path of their own to allocate; the folders above share them.
struct Candidate {
    size_t place = 0;
    Date modified;
};

// FolderStats while it is being computed.
struct Sums {
    qsizetype count = 0;
    std::array<Candidate, 3> newest;
    size_t newestCount = 0;

    // The same rule as FolderStats::insert.
    void insert(const Candidate& candidate) {
        if (newestCount == newest.size() && newest.back().modified >= candidate.modified)
            return;
        size_t at = 0;
        while (at < newestCount && newest[at].modified >= candidate.modified)
            ++at;
        newestCount = std::min(newestCount + 1, newest.size());
        std::move_backward(newest.begin() + qsizetype(at), newest.begin() + qsizetype(newestCount) - 1,
                           newest.begin() + qsizetype(newestCount));
        newest[at] = candidate;
    }

    void merge(const Sums& other) {
        count += other.count;
        for (size_t i = 0; i < other.newestCount; ++i)
            insert(other.newest[i]);
    }
};

// To which project a folder's files belong.
class ProjectFinder {
public:
    ProjectFinder(const QList<Project>& projects, const Location& root) : m_root(root), m_rootPrefix(root.view()) {
        if (!m_rootPrefix.ends_with('/'))
            m_rootPrefix += '/';
        for (const Project& project : projects) {
            m_known.insert(project.url);
            if (!project.url.view().starts_with(m_rootPrefix))
                m_outside.append(project.url);
        }
    }

    // The project's path as a piece of `folder`; absent when the files there belong to none.
    std::optional<std::string_view> projectOf(std::string_view folder) const {
        // What lies directly in the root belongs to none, not even to an outside project that holds the root itself.
        if (folder == m_root.view())
            return std::nullopt;
        if (folder.starts_with(m_rootPrefix)) {
            const auto project = folder.substr(0, folder.find('/', m_rootPrefix.size()));
            return m_known.contains(located(project)) ? std::optional(project) : std::nullopt;
        }
        for (const Location& outside : m_outside)
            if (located(folder).isAtOrBelow(outside))
                return folder.substr(0, outside.view().size());
        return std::nullopt;
    }

private:
    static Location located(std::string_view path) {
        return Location(QByteArray::fromRawData(path.data(), qsizetype(path.size())));
    }

    const Location m_root;
    std::string m_rootPrefix;
    QSet<Location> m_known;
    QList<Location> m_outside;
};

Location ownLocation(std::string_view path) {
    return Location(QByteArray(path.data(), qsizetype(path.size())));
}

} // namespace

void FolderStats::insert(const Asset& asset) {
    if (newest.size() == 3 && newest.last().modified >= asset.modified)
        return;
    const auto later =
        std::ranges::find_if(newest, [&](const Asset& entry) { return entry.modified < asset.modified; });
    newest.insert(later, asset);
    if (newest.size() == 4)
        newest.removeLast();
}

DerivedIndex DerivedIndex::compute(const AssetIndex& index, const QList<Project>& projects, const QSet<QString>& hidden,
                                   const Location& root, Date now) {
    QElapsedTimer timer;
    timer.start();
    DerivedIndex result;
    const ProjectFinder finder(projects, root);
    QSet<Location> hiddenPaths;
    for (const Project& project : projects)
        if (hidden.contains(project.name))
            hiddenPaths.insert(project.url);
    const Date dayAgo = now - 86400;

    std::unordered_map<std::string_view, Sums> stats; // keys are pieces of the index's own paths
    stats.reserve(index.folders().size() * 2);
    std::vector<Asset> newest; // every folder's own
    newest.reserve(index.folders().size() * 3);
    std::string_view project; // the last folder's, since folders come project by project
    bool projectHidden = false;
    Date activity;
    const auto closeProject = [&] {
        if (project.empty())
            return;
        const auto known = result.activity.find(ownLocation(project));
        if (known == result.activity.end())
            result.activity.insert(ownLocation(project), activity);
        else
            *known = std::max(*known, activity);
    };
    for (const auto& folder : index.folders()) {
        const auto found = finder.projectOf(folder->path());
        if (!found)
            continue;
        if (*found != project) {
            closeProject();
            project = *found;
            projectHidden = hiddenPaths.contains(ownLocation(project));
            activity = Date::distantPast();
        }
        Sums direct;
        for (size_t i = 0; i < folder->size(); ++i) {
            const AssetIndex::File file = folder->at(i);
            activity = std::max(activity, file.modified);
            if (!projectHidden) {
                if (file.modified >= dayAgo)
                    ++result.newToday;
                if (file.starred)
                    result.starred.append(folder->assetAt(i));
            }
            ++direct.count;
            if (file.kind == AssetKind::image || file.kind == AssetKind::video)
                direct.insert({i, file.modified});
        }
        for (size_t i = 0; i < direct.newestCount; ++i) {
            newest.push_back(folder->assetAt(direct.newest[i].place));
            direct.newest[i].place = newest.size() - 1;
        }
        // Ancestors are updated once for the folder and not once for each file.
        for (std::string_view path = folder->path();; path = path.substr(0, path.rfind('/'))) {
            stats[path].merge(direct);
            if (path.size() <= project.size())
                break;
        }
    }
    closeProject();

    std::ranges::stable_sort(result.starred, std::greater<>(), [](const Asset& asset) { return *asset.starred; });

    result.stats.reserve(qsizetype(stats.size()));
    for (const auto& [path, sums] : stats) {
        FolderStats& folder = result.stats[ownLocation(path)];
        folder.count = sums.count;
        folder.newest.reserve(qsizetype(sums.newestCount));
        for (size_t i = 0; i < sums.newestCount; ++i)
            folder.newest.append(newest[sums.newest[i].place]);
    }
    Log::line("DERIVED %.0f ms for %d files (background)", double(timer.nsecsElapsed()) / 1e6, int(index.count()));
    return result;
}

} // namespace lumbra
