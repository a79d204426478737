// What the palette finds by name among the library's files and folders, prepared for keystrokes: both as arenas of
// names, the files newest first, so that the first that match are the ones to show.
//
// A value of one moment, made off the main thread and let go there. Safe to read on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "NameArena.h"
#include "PaletteQuery.h"
#include "library/AssetIndex.h"
#include "library/Model.h"

#include <QSet>

#include <vector>

namespace lumbra {

class PaletteCatalog {
public:
    // Every file of the index counts, whatever its project; of the folders, those below a project that is not hidden.
    PaletteCatalog(AssetIndex index, const QList<Project>& projects, const QSet<QString>& hidden);

    // The newest files whose names hold the query's words, in that order, at most `most`. Among equal dates the order
    // is that of their paths. A file that `present` no longer holds is passed over, one that has changed is as it is
    // there.
    Assets files(const PaletteQuery& query, qsizetype most, const AssetIndex& present) const;

    struct Folder {
        Location url;
        QString text; // what was searched: the project's name, and the path below it
    };

    // The best answers to the query among the folders, best first, at most `most`.
    QList<Folder> folders(const PaletteQuery& query, qsizetype most) const;

    // Where a file or folder of a project lies, from the project's name on.
    static QString textFor(const Project& project, const Location& url);

private:
    struct FileEntry {
        quint32 folder; // in m_indexFolders
        quint32 place;  // in that folder
    };
    struct FolderEntry {
        Location url;
        qsizetype project;
        qsizetype length = 0; // of its text
    };

    void addFiles();
    void addFolders(const QSet<QString>& hidden);
    int rank(size_t folder, const PaletteQuery& query) const;

    AssetIndex m_index;
    QList<Project> m_projects;
    std::vector<const AssetIndex::Folder*> m_indexFolders; // live as long as the index
    NameArena m_fileNames;
    std::vector<FileEntry> m_files; // as their names
    NameArena m_folderTexts;
    std::vector<FolderEntry> m_folders; // as their texts
};

} // namespace lumbra
