// SPDX-License-Identifier: GPL-3.0-or-later
#include "AssetIndex.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_set>

namespace lumbra {

namespace {

// A chunk is split when it has grown to twice this many folders.
constexpr size_t chunkSize = 256;

std::string_view parentOf(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, std::max<size_t>(slash, 1));
}

std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

// What everything below a path sorts between: the first bound belongs to it, the second does not.
std::pair<std::string, std::string> boundsBelow(std::string_view path) {
    std::string bound(path);
    if (bound.ends_with('/'))
        bound.pop_back();
    return {bound + '/', bound + '0'};
}

template <typename Folders>
qsizetype filesIn(const Folders& folders) {
    return std::accumulate(folders.begin(), folders.end(), qsizetype(0),
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
    // The names in their order too, so that an edit takes over whole stretches of the arena. Of equal names the last
    // one that was added stays.
    Folder ordered(std::move(m_path));
    ordered.m_names.reserve(m_names.size());
    ordered.m_records.reserve(m_records.size());
    ordered.m_stars.reserve(m_stars.size());
    for (size_t i = 0; i < m_records.size(); ++i)
        if (i + 1 == m_records.size() || nameOf(m_records[i]) != nameOf(m_records[i + 1]))
            ordered.add(at(i));
    *this = std::move(ordered);
}

Date AssetIndex::Folder::starOf(const Record& record) const {
    const auto star = std::lower_bound(m_stars.begin(), m_stars.end(), record.nameOffset,
                                       [](const Star& s, quint32 offset) { return s.nameOffset < offset; });
    return Date{star->date};
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

size_t AssetIndex::Folder::lowerBound(std::string_view name) const {
    const auto found =
        std::lower_bound(m_records.begin(), m_records.end(), name,
                         [this](const Record& r, std::string_view sought) { return nameOf(r) < sought; });
    return size_t(found - m_records.begin());
}

std::optional<size_t> AssetIndex::Folder::find(std::string_view name) const {
    const size_t position = lowerBound(name);
    return position < size() && nameOf(m_records[position]) == name ? std::optional(position) : std::nullopt;
}

size_t AssetIndex::Folder::bytes() const {
    return sizeof(Folder) + 2 * sizeof(void*) + m_path.capacity() + m_names.capacity()
           + m_records.capacity() * sizeof(Record) + m_stars.capacity() * sizeof(Star);
}

void AssetIndex::Folder::addStretch(const Folder& from, size_t begin, size_t end) {
    if (begin == end)
        return;
    const size_t firstName = from.m_records[begin].nameOffset;
    const size_t endOfNames = from.m_records[end - 1].nameOffset + from.m_records[end - 1].nameLength;
    // Unsigned: the names may move either way.
    const auto shift = quint32(m_names.size() - firstName);
    m_names.append(from.m_names, firstName, endOfNames - firstName);
    const size_t added = m_records.size();
    m_records.insert(m_records.end(), from.m_records.begin() + qsizetype(begin),
                     from.m_records.begin() + qsizetype(end));
    for (size_t i = added; i < m_records.size(); ++i)
        m_records[i].nameOffset += shift;
    for (auto star = std::ranges::lower_bound(from.m_stars, firstName, {}, &Star::nameOffset);
         star != from.m_stars.end() && star->nameOffset < endOfNames; ++star)
        m_stars.push_back({star->nameOffset + shift, star->date});
}

std::shared_ptr<AssetIndex::Folder> AssetIndex::Folder::edited(const std::vector<std::string_view>& gone,
                                                               std::vector<File> changed) const {
    std::ranges::stable_sort(changed, {}, &File::name);

    // Where something else comes than the records that stand: in the place of one, or, of a new name, before it.
    struct Cut {
        size_t position;
        bool replaces;
        const File* file; // none: the record goes
    };
    std::vector<Cut> cuts;
    cuts.reserve(changed.size() + gone.size());
    size_t nameBytes = m_names.size();
    for (size_t i = 0; i < changed.size(); ++i) {
        // The last word on a name counts.
        if (i + 1 < changed.size() && changed[i + 1].name == changed[i].name)
            continue;
        const size_t position = lowerBound(changed[i].name);
        const bool replaces = position < size() && nameOf(m_records[position]) == changed[i].name;
        cuts.push_back({position, replaces, &changed[i]});
        nameBytes += changed[i].name.size();
    }
    for (const std::string_view name : gone)
        if (const auto position = find(name))
            cuts.push_back({*position, true, nullptr});
    std::ranges::stable_sort(cuts, {}, [](const Cut& cut) { return std::pair(cut.position, cut.replaces); });

    // The arena is written anew rather than appended to, so that a file rewritten for hours leaves nothing behind. What
    // lies between the cuts is taken over as it is: a folder of 100,000 files is to take in another within a
    // millisecond.
    auto made = std::make_shared<Folder>(m_path);
    made->m_names.reserve(nameBytes);
    made->m_records.reserve(m_records.size() + changed.size());
    made->m_stars.reserve(m_stars.size());
    size_t taken = 0;
    for (const Cut& cut : cuts) {
        if (cut.position < taken)
            continue; // gone, and there again
        made->addStretch(*this, taken, cut.position);
        if (cut.file)
            made->add(*cut.file);
        taken = cut.position + (cut.replaces ? 1 : 0);
    }
    made->addStretch(*this, taken, size());
    return made;
}

// A batch by the folders that it touches.
struct AssetIndex::Edits {
    struct Edit {
        std::vector<std::string_view> gone;
        std::vector<File> changed;
    };

    std::map<std::string_view, Edit> byFolder;
    std::unordered_set<std::string_view> goneTrees;
    std::vector<bool> touchedChunks;

    bool isGone(std::string_view folder) const {
        if (goneTrees.empty())
            return false;
        for (; folder.size() > 1; folder = parentOf(folder))
            if (goneTrees.contains(folder))
                return true;
        return goneTrees.contains(folder);
    }
};

AssetIndex::AssetIndex() {
    static const auto empty = std::make_shared<const Table>();
    m_table = empty;
}

AssetIndex::AssetIndex(std::vector<std::shared_ptr<Folder>> folders) {
    std::ranges::stable_sort(folders, {}, [](const auto& folder) -> const std::string& { return folder->path(); });
    Chunk sorted;
    sorted.reserve(folders.size());
    for (auto& folder : folders) {
        if (!sorted.empty() && sorted.back()->path() == folder->path())
            sorted.pop_back();
        if (folder->size() > 0)
            sorted.push_back(std::move(folder));
    }
    m_folderCount = sorted.size();
    m_count = filesIn(sorted);
    auto table = std::make_shared<Table>();
    append(*table, std::move(sorted));
    m_table = std::move(table);
}

void AssetIndex::append(Table& table, Chunk folders) {
    if (folders.empty())
        return;
    if (folders.size() < 2 * chunkSize) {
        table.push_back(std::make_shared<const Chunk>(std::move(folders)));
        return;
    }
    for (size_t begin = 0; begin < folders.size(); begin += chunkSize) {
        const auto from = folders.begin() + qsizetype(begin);
        const auto to = folders.begin() + qsizetype(std::min(begin + chunkSize, folders.size()));
        table.push_back(std::make_shared<const Chunk>(from, to));
    }
}

// The chunk in which a folder of this path stands or would stand.
size_t AssetIndex::chunkFor(std::string_view path) const {
    const auto after =
        std::upper_bound(m_table->begin(), m_table->end(), path, [](std::string_view sought, const auto& chunk) {
            return sought < std::string_view(chunk->front()->path());
        });
    return after == m_table->begin() ? 0 : size_t(after - m_table->begin()) - 1;
}

// The first folder at or after a path.
AssetIndex::Folders::Iterator AssetIndex::position(std::string_view path) const {
    if (m_table->empty())
        return folders().end();
    const size_t chunk = chunkFor(path);
    const Chunk& candidates = *(*m_table)[chunk];
    const auto found =
        std::lower_bound(candidates.begin(), candidates.end(), path, [](const auto& folder, std::string_view sought) {
            return std::string_view(folder->path()) < sought;
        });
    if (found == candidates.end())
        return {*m_table, chunk + 1, 0};
    return {*m_table, chunk, size_t(found - candidates.begin())};
}

const AssetIndex::FolderPointer& AssetIndex::folder(std::string_view path) const {
    static const FolderPointer none;
    const auto found = position(path);
    return found != folders().end() && (*found)->path() == path ? *found : none;
}

std::optional<Asset> AssetIndex::find(const Location& path) const {
    const FolderPointer& holder = folder(parentOf(path.view()));
    const auto place = holder ? holder->find(nameOf(path.view())) : std::nullopt;
    return place ? std::optional(holder->assetAt(*place)) : std::nullopt;
}

bool AssetIndex::contains(const Location& path) const {
    const FolderPointer& holder = folder(parentOf(path.view()));
    return holder && holder->find(nameOf(path.view())).has_value();
}

QList<AssetIndex::FolderPointer> AssetIndex::foldersUnder(const Location& location) const {
    QList<FolderPointer> found;
    if (location.isEmpty())
        return found;
    const auto [first, last] = boundsBelow(location.view());
    const auto own = position(location.view());
    const auto begin = position(first);
    const auto end = position(last);
    // Between P and "P/" stand the siblings whose names continue P's.
    if (own != begin && own != folders().end() && (*own)->path() == location.view())
        found.append(*own);
    for (auto below = begin; below != end; ++below)
        found.append(*below);
    return found;
}

Assets AssetIndex::assetsUnder(const Location& location) const {
    Assets assets;
    for (const auto& holder : foldersUnder(location))
        for (size_t i = 0; i < holder->size(); ++i)
            assets.append(holder->assetAt(i));
    return assets;
}

AssetIndex::Edits AssetIndex::editsFor(const Changes& changes) const {
    Edits edits;
    edits.touchedChunks.resize(m_table->size());
    for (const Location& path : changes.gone) {
        if (path.isEmpty())
            continue;
        if (contains(path)) {
            edits.byFolder[parentOf(path.view())].gone.push_back(nameOf(path.view()));
            continue;
        }
        // Not a file that we knew, so it was a folder, or nothing.
        if (m_table->empty())
            continue;
        const auto [first, last] = boundsBelow(path.view());
        edits.goneTrees.insert(path.view());
        edits.touchedChunks[chunkFor(path.view())] = true;
        if (position(first) != position(last))
            for (size_t chunk = chunkFor(first); chunk <= chunkFor(last); ++chunk)
                edits.touchedChunks[chunk] = true;
    }
    for (const Asset& asset : changes.assets)
        edits.byFolder[parentOf(asset.url.view())].changed.push_back(
            {nameOf(asset.url.view()), asset.kind, asset.size, asset.modified, asset.starred});
    if (!m_table->empty())
        for (const auto& entry : edits.byFolder)
            edits.touchedChunks[chunkFor(entry.first)] = true;
    return edits;
}

AssetIndex AssetIndex::applying(const Changes& changes) const {
    Edits edits = editsFor(changes);
    if (edits.byFolder.empty() && edits.goneTrees.empty())
        return *this;

    AssetIndex made;
    auto table = std::make_shared<Table>();
    table->reserve(m_table->size() + 1);
    made.m_folderCount = m_folderCount;
    made.m_count = m_count;
    auto edit = edits.byFolder.begin();

    // An index without folders counts as one empty chunk.
    static const Chunk nothing;
    for (size_t i = 0; i < std::max<size_t>(m_table->size(), 1); ++i) {
        if (!m_table->empty() && !edits.touchedChunks[i]) {
            table->push_back((*m_table)[i]);
            continue;
        }
        const Chunk& before = m_table->empty() ? nothing : *(*m_table)[i];
        const bool isLast = i + 1 >= m_table->size();
        Chunk after;
        after.reserve(before.size() + 1);
        const auto rebuild = [&](const Folder& folder) {
            auto edited = folder.edited(edit->second.gone, std::move(edit->second.changed));
            if (edited->size() > 0)
                after.push_back(std::move(edited));
            ++edit;
        };
        for (const FolderPointer& folder : before) {
            while (edit != edits.byFolder.end() && edit->first < folder->path())
                rebuild(Folder(std::string(edit->first)));
            const bool isEdited = edit != edits.byFolder.end() && edit->first == folder->path();
            if (edits.isGone(folder->path())) {
                if (isEdited)
                    rebuild(Folder(folder->path()));
            } else if (isEdited) {
                rebuild(*folder);
            } else {
                after.push_back(folder);
            }
        }
        while (edit != edits.byFolder.end() && (isLast || edit->first < (*m_table)[i + 1]->front()->path()))
            rebuild(Folder(std::string(edit->first)));
        made.m_folderCount += after.size() - before.size();
        made.m_count += filesIn(after) - filesIn(before);
        append(*table, std::move(after));
    }
    made.m_table = std::move(table);
    return made;
}

size_t AssetIndex::bytes() const {
    size_t sum = m_table->capacity() * sizeof(Table::value_type);
    for (const auto& chunk : *m_table)
        sum += sizeof(Chunk) + 2 * sizeof(void*) + chunk->capacity() * sizeof(FolderPointer);
    for (const auto& holder : folders())
        sum += holder->bytes();
    return sum;
}

} // namespace lumbra
