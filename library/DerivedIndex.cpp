// SPDX-License-Identifier: GPL-3.0-or-later
#include "DerivedIndex.h"

#include "platform/Log.h"

#include <QElapsedTimer>

#include <algorithm>
#include <iterator>
#include <optional>
#include <thread>

namespace lumbra {

namespace {

constexpr size_t worthSharing = 2'000; // folders; fewer are summed up before another thread has begun

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

// What is asked of every file, and answered for the folders from one place in the index to another. Two threads have
// one each, and no cache line in common.
class alignas(64) Part {
public:
    Part(const ProjectFinder& finder, const QSet<Location>& hidden, Date dayAgo)
        : m_finder(finder), m_hidden(hidden), m_dayAgo(dayAgo) {}

    void take(const AssetIndex::Folder& folder);

    // Takes in what another part found in the folders that follow.
    void append(Part&& later);

    DerivedIndex finish(const AssetIndex& index) &&;

private:
    void closeProject();
    void saw(const Location& project, Date activity);

    const ProjectFinder& m_finder;
    const QSet<Location>& m_hidden;
    const Date m_dayAgo;
    DerivedIndex m_result;
    FolderStatsMap::Summing m_stats;
    std::string_view m_project; // the last folder's, since folders come project by project
    bool m_isHidden = false;
    Date m_activity;
};

void Part::take(const AssetIndex::Folder& folder) {
    const auto project = m_finder.projectOf(folder.path());
    if (!project)
        return;
    if (*project != m_project) {
        closeProject();
        m_project = *project;
        m_isHidden = m_hidden.contains(ownLocation(m_project));
        m_activity = Date::distantPast();
    }
    m_stats.add(folder, m_project, [&](const AssetIndex::File& file, size_t place) {
        m_activity = std::max(m_activity, file.modified);
        if (m_isHidden)
            return;
        if (file.modified >= m_dayAgo)
            ++m_result.newToday;
        if (file.starred)
            m_result.starred.append(folder.assetAt(place));
    });
}

void Part::closeProject() {
    if (m_project.empty())
        return;
    saw(ownLocation(m_project), m_activity);
}

void Part::saw(const Location& project, Date activity) {
    const auto known = m_result.activity.find(project);
    if (known == m_result.activity.end())
        m_result.activity.insert(project, activity);
    else
        *known = std::max(*known, activity);
}

void Part::append(Part&& later) {
    later.closeProject();
    for (auto found = later.m_result.activity.cbegin(); found != later.m_result.activity.cend(); ++found)
        saw(found.key(), *found);
    m_result.newToday += later.m_result.newToday;
    m_result.starred += later.m_result.starred;
    m_stats.append(std::move(later.m_stats));
}

DerivedIndex Part::finish(const AssetIndex& index) && {
    closeProject();
    std::ranges::stable_sort(m_result.starred, std::greater<>(), [](const Asset& asset) { return *asset.starred; });
    m_result.stats = std::move(m_stats).finish(index);
    return std::move(m_result);
}

} // namespace

DerivedIndex DerivedIndex::compute(const AssetIndex& index, const QList<Project>& projects, const QSet<QString>& hidden,
                                   const Location& root, Date now) {
    QElapsedTimer timer;
    timer.start();
    const ProjectFinder finder(projects, root);
    QSet<Location> hiddenPaths;
    for (const Project& project : projects)
        if (hidden.contains(project.name))
            hiddenPaths.insert(project.url);

    Part first(finder, hiddenPaths, now - 86400);
    Part second = first;
    const auto take = [](Part& part, auto begin, auto end) {
        for (auto folder = begin; folder != end; ++folder)
            part.take(**folder);
    };
    const auto folders = index.folders();
    const bool isShared = folders.size() >= worthSharing;
    const auto middle = std::next(folders.begin(), qsizetype(isShared ? folders.size() / 2 : folders.size()));
    {
        std::jthread helper;
        if (isShared)
            helper = std::jthread([&] { take(second, middle, folders.end()); });
        take(first, folders.begin(), middle);
    }
    first.append(std::move(second));
    DerivedIndex result = std::move(first).finish(index);
    Log::line("DERIVED %.0f ms for %d files (background)", double(timer.nsecsElapsed()) / 1e6, int(index.count()));
    return result;
}

} // namespace lumbra
