// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteCatalog.h"

#include <QHash>

#include <algorithm>
#include <functional>

namespace lumbra {

namespace {

constexpr qsizetype noProject = -1;

// Every folder that holds files, and those above it up to its project, with the project.
QHash<Location, qsizetype> foldersWithProject(const std::vector<const AssetIndex::Folder*>& all,
                                              const QList<Project>& projects) {
    QHash<Location, qsizetype> projectAt;
    for (qsizetype number = projects.size() - 1; number >= 0; --number)
        projectAt.insert(projects[number].url, number); // of two with one folder the first stays
    QHash<Location, qsizetype> found;
    found.reserve(qsizetype(all.size()));
    std::vector<Location> way;
    for (const AssetIndex::Folder* folder : all) {
        way.clear();
        qsizetype project = noProject;
        for (Location step(QByteArray::fromStdString(folder->path()));; step = step.parent()) {
            if (const auto known = found.constFind(step); known != found.cend()) {
                project = *known;
                break;
            }
            way.push_back(step);
            project = projectAt.value(step, noProject);
            if (project != noProject || step.path().size() <= 1)
                break;
        }
        for (const Location& step : way)
            found.insert(step, project);
    }
    return found;
}

} // namespace

PaletteCatalog::PaletteCatalog(AssetIndex index, const QList<Project>& projects, const QSet<QString>& hidden)
    : m_index(std::move(index)), m_projects(projects) {
    m_indexFolders.reserve(m_index.folders().size());
    for (const AssetIndex::FolderPointer& folder : m_index.folders())
        m_indexFolders.push_back(folder.get());
    addFiles();
    addFolders(hidden);
}

// The names are read in the order in which they lie in memory, and put into theirs afterwards: to follow each file to
// its folder in the order of the dates takes three times as long.
void PaletteCatalog::addFiles() {
    struct Dated {
        double modified;
        quint32 number;
    };
    std::vector<FileEntry> entries;
    std::vector<Dated> dated;
    NameArena names;
    const auto count = size_t(m_index.count());
    entries.reserve(count);
    dated.reserve(count);
    names.reserve(count, 0);
    for (quint32 folder = 0; folder < m_indexFolders.size(); ++folder) {
        for (quint32 place = 0; place < m_indexFolders[folder]->size(); ++place) {
            const AssetIndex::File file = m_indexFolders[folder]->at(place);
            dated.push_back({file.modified.seconds, quint32(entries.size())});
            entries.push_back({folder, place});
            names.add(file.name);
        }
    }
    std::ranges::stable_sort(dated, std::greater(), &Dated::modified);
    m_files.reserve(count);
    m_fileNames.reserve(count, names.bytes());
    for (const Dated& file : dated) {
        m_files.push_back(entries[file.number]);
        m_fileNames.addFrom(names, file.number);
    }
}

void PaletteCatalog::addFolders(const QSet<QString>& hidden) {
    const auto all = foldersWithProject(m_indexFolders, m_projects);
    for (auto folder = all.cbegin(); folder != all.cend(); ++folder) {
        if (*folder == noProject || folder.key() == m_projects[*folder].url
            || hidden.contains(m_projects[*folder].name))
            continue;
        m_folders.push_back({folder.key(), *folder});
    }
    std::ranges::sort(m_folders, {}, &FolderEntry::url);
    for (FolderEntry& folder : m_folders) {
        const QString text = textFor(m_projects[folder.project], folder.url);
        folder.length = PaletteQuery::length(text.toLower());
        m_folderTexts.add(text.toStdString());
    }
}

Assets PaletteCatalog::files(const PaletteQuery& query, qsizetype most, const AssetIndex& present) const {
    Assets found;
    m_fileNames.find(query.words(), [&](size_t position) {
        const FileEntry& entry = m_files[position];
        const Asset asset = m_indexFolders[entry.folder]->assetAt(entry.place);
        if (const auto kept = present == m_index ? asset : present.find(asset.url))
            found.append(*kept);
        return found.size() < most;
    });
    return found;
}

QList<PaletteCatalog::Folder> PaletteCatalog::folders(const PaletteQuery& query, qsizetype most) const {
    struct Hit {
        int rank;
        size_t folder;
    };
    std::vector<Hit> best; // the highest rank first; among equals, which come in the order of their paths, the first
    m_folderTexts.find(query.words(), [&](size_t folder) {
        const Hit hit{rank(folder, query), folder};
        const auto place = std::ranges::upper_bound(best, hit.rank, std::greater(), &Hit::rank);
        if (place - best.begin() < most) {
            best.insert(place, hit);
            best.resize(std::min(best.size(), size_t(most)), hit);
        }
        return true;
    });
    QList<Folder> found;
    for (const Hit& hit : best) {
        const FolderEntry& entry = m_folders[hit.folder];
        found.append({entry.url, textFor(m_projects[entry.project], entry.url)});
    }
    return found;
}

int PaletteCatalog::rank(size_t folder, const PaletteQuery& query) const {
    constexpr int forItsOwnName = 10;
    const std::string_view text = m_folderTexts.at(folder);
    const std::string_view name = text.substr(text.rfind('/') + 1);
    const bool isNamed = name.find(query.words().back()) != std::string_view::npos;
    return query.scoreOfMatch(text, m_folders[folder].length) + (isNamed ? forItsOwnName : 0);
}

QString PaletteCatalog::textFor(const Project& project, const Location& url) {
    if (!url.isAtOrBelow(project.url))
        return project.name;
    const std::string_view below = url.view().substr(project.url.view().size());
    return project.name + QString::fromUtf8(below.data(), qsizetype(below.size()));
}

} // namespace lumbra
