// SPDX-License-Identifier: GPL-3.0-or-later
#include "AssetIndex.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_set>

namespace lumbra {

namespace {

using Table = std::vector<AssetIndex::FolderPointer>;

// The first folder at or after a path.
auto position(const Table& table, std::string_view path) {
    return std::lower_bound(table.begin(), table.end(), path, [](const auto& folder, std::string_view sought) {
        return std::string_view(folder->path()) < sought;
    });
}

// Where the folders strictly below a path begin and end.
auto rangeBelow(const Table& table, std::string_view path) {
    std::string bound(path);
    if (bound.ends_with('/'))
        bound.pop_back();
    const auto begin = position(table, bound + '/');
    const auto end = position(table, bound + '0');
    return std::pair(begin, end);
}

std::string_view parentOf(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, std::max<size_t>(slash, 1));
}

std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

qsizetype countIn(const Table& table) {
    return std::accumulate(table.begin(), table.end(), qsizetype(0),
                           [](qsizetype sum, const auto& folder) { return sum + qsizetype(folder->size()); });
}

} // namespace

void AssetIndex::Folder::add(const File& file) {
    const auto offset = quint32(m_names.size());
    m_names += file.name;
    m_records.push_back(
        {offset, quint16(file.name.size()), file.kind, file.starred.has_value(), file.size, file.modified.seconds});
    if (file.starred)
        m_stars.push_back({offset, file.starred->seconds});
}

void AssetIndex::Folder::finish() {
    std::stable_sort(m_records.begin(), m_records.end(),
                     [this](const Record& a, const Record& b) { return nameOf(a) < nameOf(b); });
    // Of equal names the last one that was added stays.
    auto kept = m_records.begin();
    for (auto record = m_records.begin(); record != m_records.end(); ++record) {
        if (kept != m_records.begin() && nameOf(kept[-1]) == nameOf(*record))
            kept[-1] = *record;
        else
            *kept++ = *record;
    }
    m_records.erase(kept, m_records.end());
    m_records.shrink_to_fit();
    m_names.shrink_to_fit();
    m_stars.shrink_to_fit();
}

AssetIndex::File AssetIndex::Folder::at(size_t place) const {
    const Record& record = m_records[place];
    File file{nameOf(record), record.kind, record.size, Date{record.modified}, std::nullopt};
    if (record.starred) {
        const auto star = std::lower_bound(m_stars.begin(), m_stars.end(), record.nameOffset,
                                           [](const Star& s, quint32 offset) { return s.nameOffset < offset; });
        file.starred = Date{star->date};
    }
    return file;
}

Asset AssetIndex::Folder::assetAt(size_t place) const {
    const File file = at(place);
    QByteArray path;
    path.reserve(qsizetype(m_path.size() + 1 + file.name.size()));
    path.append(m_path.data(), qsizetype(m_path.size()));
    if (!path.endsWith('/'))
        path += '/';
    path.append(file.name.data(), qsizetype(file.name.size()));
    return {Location(std::move(path)), file.kind, file.size, file.modified, file.starred};
}

std::optional<size_t> AssetIndex::Folder::find(std::string_view name) const {
    const auto found =
        std::lower_bound(m_records.begin(), m_records.end(), name,
                         [this](const Record& r, std::string_view sought) { return nameOf(r) < sought; });
    if (found == m_records.end() || nameOf(*found) != name)
        return std::nullopt;
    return size_t(found - m_records.begin());
}

size_t AssetIndex::Folder::bytes() const {
    return sizeof(Folder) + 2 * sizeof(void*) + m_path.capacity() + m_names.capacity()
           + m_records.capacity() * sizeof(Record) + m_stars.capacity() * sizeof(Star);
}

std::shared_ptr<AssetIndex::Folder> AssetIndex::Folder::edited(const std::vector<std::string_view>& gone,
                                                               std::vector<File> changed) const {
    const std::unordered_set<std::string_view> dropped(gone.begin(), gone.end());
    std::ranges::stable_sort(changed, {}, &File::name);

    // The arena is written anew rather than appended to, so that a file rewritten for hours leaves nothing behind.
    auto made = std::make_shared<Folder>(m_path);
    made->m_names.reserve(m_names.size());
    made->m_records.reserve(m_records.size() + changed.size());
    made->m_stars.reserve(m_stars.size());
    auto next = changed.begin();
    const auto takeChanged = [&] {
        // The last word on a name counts.
        while (next + 1 != changed.end() && next[1].name == next->name)
            ++next;
        made->add(*next++);
    };
    for (size_t i = 0; i < m_records.size(); ++i) {
        const std::string_view name = nameOf(m_records[i]);
        while (next != changed.end() && next->name < name)
            takeChanged();
        if (next != changed.end() && next->name == name)
            takeChanged();
        else if (dropped.empty() || !dropped.contains(name))
            made->add(at(i));
    }
    while (next != changed.end())
        takeChanged();
    return made;
}

AssetIndex::AssetIndex()
    : AssetIndex(
        [] {
            static const auto empty = std::make_shared<const Table>();
            return empty;
        }(),
        0) {}

AssetIndex::AssetIndex(std::vector<std::shared_ptr<Folder>> folders) {
    std::ranges::stable_sort(folders, {}, [](const auto& folder) -> const std::string& { return folder->path(); });
    auto table = std::make_shared<Table>();
    table->reserve(folders.size());
    for (auto& folder : folders) {
        folder->finish();
        if (!table->empty() && table->back()->path() == folder->path())
            table->pop_back();
        if (folder->size() > 0)
            table->push_back(std::move(folder));
    }
    table->shrink_to_fit();
    m_count = countIn(*table);
    m_folders = std::move(table);
}

std::optional<Asset> AssetIndex::find(const Location& path) const {
    const auto folder = position(*m_folders, parentOf(path.view()));
    if (folder == m_folders->end() || (*folder)->path() != parentOf(path.view()))
        return std::nullopt;
    const auto place = (*folder)->find(nameOf(path.view()));
    if (!place)
        return std::nullopt;
    return (*folder)->assetAt(*place);
}

bool AssetIndex::contains(const Location& path) const {
    const auto folder = position(*m_folders, parentOf(path.view()));
    return folder != m_folders->end() && (*folder)->path() == parentOf(path.view())
           && (*folder)->find(nameOf(path.view())).has_value();
}

QList<AssetIndex::FolderPointer> AssetIndex::foldersUnder(const Location& folder) const {
    QList<FolderPointer> found;
    const auto own = position(*m_folders, folder.view());
    const auto [begin, end] = rangeBelow(*m_folders, folder.view());
    found.reserve(end - begin + 1);
    // The root folder is the one that stands in its own range.
    if (own != m_folders->end() && (*own)->path() == folder.view() && own != begin)
        found.append(*own);
    found.append(QList<FolderPointer>(begin, end));
    return found;
}

Assets AssetIndex::assetsUnder(const Location& folder) const {
    Assets assets;
    for (const auto& holder : foldersUnder(folder))
        for (size_t i = 0; i < holder->size(); ++i)
            assets.append(holder->assetAt(i));
    return assets;
}

AssetIndex AssetIndex::applying(const Changes& changes) const {
    struct Edit {
        std::vector<std::string_view> gone;
        std::vector<File> changed;
    };
    std::map<std::string_view, Edit> edits; // by folder path
    std::vector<bool> removed;              // folders that go with a tree, sized when the first one does
    const Table& table = *m_folders;

    const auto removeRange = [&](auto begin, auto end) {
        if (begin == end)
            return;
        removed.resize(table.size());
        std::fill(removed.begin() + (begin - table.begin()), removed.begin() + (end - table.begin()), true);
    };
    for (const Location& path : changes.gone) {
        if (contains(path)) {
            edits[parentOf(path.view())].gone.push_back(nameOf(path.view()));
            continue;
        }
        // Not a file that we knew, so it was a folder, or nothing.
        const auto own = position(table, path.view());
        if (own != table.end() && (*own)->path() == path.view())
            removeRange(own, own + 1);
        const auto [begin, end] = rangeBelow(table, path.view());
        removeRange(begin, end);
    }
    for (const Asset& asset : changes.assets)
        edits[parentOf(asset.url.view())].changed.push_back(
            {nameOf(asset.url.view()), asset.kind, asset.size, asset.modified, asset.starred});
    if (edits.empty() && removed.empty())
        return *this;

    auto made = std::make_shared<Table>();
    made->reserve(table.size() + edits.size());
    auto copied = table.begin();
    const auto copyUpTo = [&](auto end) {
        if (removed.empty()) {
            made->insert(made->end(), copied, end);
            copied = end;
            return;
        }
        for (; copied != end; ++copied)
            if (!removed[size_t(copied - table.begin())])
                made->push_back(*copied);
    };
    qsizetype difference = 0;
    for (auto& [path, edit] : edits) {
        const auto place = position(table, path);
        copyUpTo(place);
        const bool known = place != table.end() && (*place)->path() == path;
        const bool stays = known && (removed.empty() || !removed[size_t(place - table.begin())]);
        auto folder = stays ? (*place)->edited(edit.gone, std::move(edit.changed))
                            : Folder(std::string(path)).edited(edit.gone, std::move(edit.changed));
        difference += qsizetype(folder->size()) - (stays ? qsizetype((*place)->size()) : 0);
        if (known)
            ++copied;
        if (folder->size() > 0)
            made->push_back(std::move(folder));
    }
    copyUpTo(table.end());
    for (size_t i = 0; i < removed.size(); ++i)
        if (removed[i])
            difference -= qsizetype(table[i]->size());
    return {std::move(made), m_count + difference};
}

size_t AssetIndex::bytes() const {
    return std::accumulate(m_folders->begin(), m_folders->end(), m_folders->capacity() * sizeof(FolderPointer),
                           [](size_t sum, const auto& folder) { return sum + folder->bytes(); });
}

} // namespace lumbra
