// Every asset of the library as one value: a map from path to Asset whose copy costs nothing, however large it is, and
// whose change never stalls the main thread, however many copies are alive.
//
// It is a shared, immutable vector of folders sorted by path; a folder is an immutable arena of names with fixed
// records sorted by name. A batch of changes rebuilds each folder that it touches once and shares all the others. Paths
// sort byte for byte, so everything below P is the range from "P/" to "P0" ('0' follows '/').
//
// Values: safe to read on any thread. Dropping the last copy of a large index takes milliseconds; Tasks::dropLater.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Model.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lumbra {

class AssetIndex {
public:
    // A file as the arena holds it; `name` lives as long as its folder.
    struct File {
        std::string_view name;
        AssetKind kind;
        qint64 size;
        Date modified;
        std::optional<Date> starred;
    };

    // The assets directly in one folder, sorted by name.
    class Folder {
    public:
        explicit Folder(std::string path) : m_path(std::move(path)) {}

        // While building: any order, `finish` once at the end. A name given twice keeps its last record.
        void add(const File& file);
        void finish();

        const std::string& path() const { return m_path; }
        size_t size() const { return m_records.size(); }
        File at(size_t position) const;
        Asset assetAt(size_t position) const;
        std::optional<size_t> find(std::string_view name) const;

        // This folder without the names in `gone` and with the files in `changed`, finished.
        std::shared_ptr<Folder> edited(const std::vector<std::string_view>& gone, std::vector<File> changed) const;

        // The share of the index's `bytes()` that this folder takes.
        size_t bytes() const;

    private:
        struct Record {
            quint32 nameOffset;
            quint16 nameLength;
            AssetKind kind;
            bool starred;
            qint64 size;
            double modified;
        };
        struct Star {
            quint32 nameOffset; // identifies the record whatever its position
            double date;
        };

        std::string_view nameOf(const Record& record) const {
            return std::string_view(m_names).substr(record.nameOffset, record.nameLength);
        }

        std::string m_path;
        std::string m_names;
        std::vector<Record> m_records; // by name, once finished
        std::vector<Star> m_stars;     // by nameOffset, once finished
    };

    using FolderPointer = std::shared_ptr<const Folder>;

    // What a batch of events comes to. `gone` is applied first: a path that is no asset stands for a folder, and all
    // below it go.
    struct Changes {
        QList<Location> gone;
        Assets assets;
    };

    AssetIndex();

    // Takes folders in any order; of two with one path the later stays.
    explicit AssetIndex(std::vector<std::shared_ptr<Folder>> folders);

    qsizetype count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }

    std::optional<Asset> find(const Location& path) const;
    bool contains(const Location& path) const;

    // All folders that hold assets, by path; those at or below `folder`.
    std::span<const FolderPointer> folders() const { return *m_folders; }
    QList<FolderPointer> foldersUnder(const Location& folder) const;

    // All assets below the folder at any depth, by path of their folder, then by name.
    Assets assetsUnder(const Location& folder) const;

    // A new value with the changes; this one stays as it is. Costs a copy of the folder table (8 ns an entry) and of
    // each touched folder.
    AssetIndex applying(const Changes& changes) const;

    // Heap bytes held by this value, for measurements.
    size_t bytes() const;

    // True for copies of one value; two indexes built apart are never equal, whatever they hold.
    friend bool operator==(const AssetIndex& a, const AssetIndex& b) { return a.m_folders == b.m_folders; }

private:
    using Table = std::vector<FolderPointer>;
    AssetIndex(std::shared_ptr<const Table> folders, qsizetype count) : m_folders(std::move(folders)), m_count(count) {}

    std::shared_ptr<const Table> m_folders; // sorted by path, no empty folder
    qsizetype m_count = 0;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::AssetIndex)
