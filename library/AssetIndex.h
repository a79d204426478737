// Every asset of the library as one value: a map from path to Asset whose copy costs nothing, however large it is, and
// whose change never stalls the main thread, however many copies are alive.
//
// It is a shared, immutable table of folders sorted by path, in chunks of some hundred; a folder is an immutable arena
// of names with fixed records sorted by name. A batch of changes rebuilds each folder and each chunk that it touches
// once and shares all the others. Paths sort byte for byte, so everything below P is the range from "P/" to "P0" ('0'
// follows '/').
//
// Values: safe to read on any thread. Dropping the last copy of a large index takes milliseconds; Tasks::dropLater.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Model.h"

#include <iterator>
#include <memory>
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

        friend bool operator==(const File&, const File&) = default;
    };

    // The assets directly in one folder, sorted by name.
    class Folder {
    public:
        explicit Folder(std::string path) : m_path(std::move(path)) {}

        // While building: any order, `finish` once at the end, which also gives back what was taken for growth. A name
        // given twice keeps its last record.
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
            return {m_names.data() + record.nameOffset, record.nameLength};
        }

        Date starOf(const Record& record) const;

        // The first position whose name is not before the name given.
        size_t lowerBound(std::string_view name) const;

        // Adds the files of a finished folder from one position to before another.
        void addStretch(const Folder& from, size_t begin, size_t end);

        std::string m_path;
        std::string m_names;           // one after the other, in the order of the records once finished
        std::vector<Record> m_records; // by name, once finished
        std::vector<Star> m_stars;     // by nameOffset, once finished
    };

    using FolderPointer = std::shared_ptr<const Folder>;

private:
    // Sorted by path, never empty. A change copies the pointers of the chunks that it touches; in one flat table the
    // reference counts of fifty thousand folders would cost milliseconds.
    using Chunk = std::vector<FolderPointer>;
    using Table = std::vector<std::shared_ptr<const Chunk>>;

public:
    // The folders of an index in the order of their paths; valid as long as the index.
    class Folders {
    public:
        class Iterator {
        public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = FolderPointer;
            using difference_type = std::ptrdiff_t;
            using pointer = const FolderPointer*;
            using reference = const FolderPointer&;

            Iterator() = default;
            Iterator(const Table& table, size_t chunk, size_t place)
                : m_table(&table), m_chunk(chunk), m_place(place) {}

            reference operator*() const { return (*(*m_table)[m_chunk])[m_place]; }
            pointer operator->() const { return &**this; }
            Iterator& operator++() {
                if (++m_place == (*m_table)[m_chunk]->size()) {
                    ++m_chunk;
                    m_place = 0;
                }
                return *this;
            }
            Iterator operator++(int) {
                Iterator before = *this;
                ++*this;
                return before;
            }
            friend bool operator==(const Iterator&, const Iterator&) = default;

        private:
            const Table* m_table = nullptr;
            size_t m_chunk = 0;
            size_t m_place = 0;
        };

        Iterator begin() const { return {*m_table, 0, 0}; }
        Iterator end() const { return {*m_table, m_table->size(), 0}; }
        size_t size() const { return m_size; }

    private:
        friend class AssetIndex;
        Folders(const Table& table, size_t size) : m_table(&table), m_size(size) {}

        const Table* m_table;
        size_t m_size;
    };

    // What a batch of events comes to. `gone` is applied first: a path that is no asset stands for a folder, and all
    // below it go.
    struct Changes {
        QList<Location> gone;
        Assets assets;
    };

    AssetIndex();

    // Takes finished folders in any order; of two with one path the later stays.
    explicit AssetIndex(std::vector<std::shared_ptr<Folder>> folders);

    qsizetype count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }

    std::optional<Asset> find(const Location& path) const;
    bool contains(const Location& path) const;

    // All folders that hold assets, by path; those at or below `folder`.
    Folders folders() const { return {*m_table, m_folderCount}; }
    QList<FolderPointer> foldersUnder(const Location& folder) const;

    // The one with this path, valid as long as the index; null if it holds no assets.
    const FolderPointer& folder(std::string_view path) const;

    // All assets below the folder at any depth, by path of their folder, then by name.
    Assets assetsUnder(const Location& folder) const;

    // A new value with the changes; this one stays as it is. Costs a copy of the table of chunks and of each touched
    // chunk and folder: microseconds, and never a pass over the whole.
    AssetIndex applying(const Changes& changes) const;

    // Heap bytes held by this value, for measurements.
    size_t bytes() const;

    // True for copies of one value; two indexes built apart are never equal, whatever they hold.
    friend bool operator==(const AssetIndex& a, const AssetIndex& b) { return a.m_table == b.m_table; }

private:
    struct Edits;

    size_t chunkFor(std::string_view path) const;
    Folders::Iterator position(std::string_view path) const;
    Edits editsFor(const Changes& changes) const;
    static void append(Table& table, Chunk folders);

    std::shared_ptr<const Table> m_table; // no empty chunk, no empty folder
    size_t m_folderCount = 0;
    qsizetype m_count = 0;
};

// Here, since passes over the whole index call it for every file.
inline AssetIndex::File AssetIndex::Folder::at(size_t place) const {
    const Record& record = m_records[place];
    return {nameOf(record), record.kind, record.size, Date{record.modified},
            record.starred ? std::optional(starOf(record)) : std::nullopt};
}

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::AssetIndex)
