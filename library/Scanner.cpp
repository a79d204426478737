// SPDX-License-Identifier: GPL-3.0-or-later
#include "Scanner.h"

#include "core/Stars.h"
#include "platform/Descriptor.h"
#include "platform/FileFacts.h"
#include "platform/FileTypes.h"
#include "platform/NaturalOrder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

namespace lumbra::Scanner {

namespace {

constexpr std::array<std::string_view, 18> prunedNames{
    "node_modules", ".git",   "build",       "dist",          "DerivedData", "venv",
    ".venv",        "Pods",   "gradle-home", ".gradle",       "caches",      "__pycache__",
    ".next",        ".turbo", ".cache",      "site-packages", ".build",      "bower_components"};

// What getdents64 fills in; the C library hides it.
struct DirectoryEntry {
    quint64 inode;
    qint64 offset;
    unsigned short length;
    unsigned char type;
    char name[1]; // and on, up to a NUL
};

constexpr size_t bufferSize = 64 * 1024;

bool isUtf8(std::string_view name) {
    return QByteArrayView(name.data(), qsizetype(name.size())).isValidUtf8();
}

// Looks at one entry: `onFolder(name)` for what a walk would enter, `onFile(File)` for an asset. What is hidden,
// pruned, of no kind or known already falls out before it costs a system call.
template <typename OnFolder, typename OnFile>
void readEntry(int folder, const char* entry, unsigned char type, const AssetIndex::Folder* known,
               const OnFolder& onFolder, const OnFile& onFile) {
    const std::string_view name(entry);
    if (name.starts_with('.'))
        return;
    const auto knownAt = known && type == DT_REG ? known->find(name) : std::nullopt;
    if (knownAt)
        return onFile(known->at(*knownAt));
    const auto kind = assetKindOfName(name);
    std::optional<FileFacts> facts;
    // Some file systems do not tell the type with the name.
    if (type == DT_UNKNOWN || (type == DT_REG && kind)) {
        facts = FileFacts::ofEntry(folder, entry);
        if (!facts)
            return;
    }
    if (facts ? facts->isFolder : type == DT_DIR) {
        if (!isInvisibleFolder(name) && isUtf8(name))
            onFolder(name);
    } else if (facts && facts->isRegularFile && kind && isUtf8(name)) {
        onFile(AssetIndex::File{name, *kind, facts->size, facts->modified, Stars::readAt(folder, entry)});
    }
}

// All entries of one folder. Names point into the buffer and hold until the call returns.
template <typename OnFolder, typename OnFile>
void readFolder(int folder, char* buffer, const AssetIndex::Folder* known, const OnFolder& onFolder,
                const OnFile& onFile) {
    for (;;) {
        const long filled = ::syscall(SYS_getdents64, folder, buffer, bufferSize);
        if (filled <= 0)
            return;
        for (long offset = 0; offset < filled;) {
            const auto* entry = reinterpret_cast<const DirectoryEntry*>(buffer + offset);
            readEntry(folder, buffer + offset + offsetof(DirectoryEntry, name), entry->type, known, onFolder, onFile);
            offset += entry->length;
        }
    }
}

Asset assetOf(const Location& folder, const AssetIndex::File& file) {
    return {folder.child(file.name), file.kind, file.size, file.modified, file.starred};
}

// The folders still to be read, shared by the workers. A worker keeps going down by itself and hands over what it finds
// beside its way, so that the lock is taken once a folder and not once an entry.
class FolderQueue {
public:
    explicit FolderQueue(std::vector<Location> roots) : m_waiting(std::move(roots)) {}

    // Blocks until there is a folder; false when all are read and nobody can find more.
    bool take(Location& folder) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_busy == 0; });
        if (m_waiting.empty())
            return false;
        folder = std::move(m_waiting.back());
        m_waiting.pop_back();
        ++m_busy;
        return true;
    }

    void add(std::vector<Location>& folders) {
        const std::lock_guard lock(m_mutex);
        std::ranges::move(folders, std::back_inserter(m_waiting));
        m_changed.notify_all();
    }

    void done() {
        const std::lock_guard lock(m_mutex);
        if (--m_busy == 0)
            m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Location> m_waiting;
    int m_busy = 0;
};

using Folders = std::vector<std::shared_ptr<AssetIndex::Folder>>;

void indexFolders(FolderQueue& queue, const std::stop_token& stop, Folders& found) {
    const auto buffer = std::make_unique<char[]>(bufferSize);
    std::vector<Location> subfolders;
    Location path;
    while (queue.take(path)) {
        for (bool goesDown = true; goesDown && !stop.stop_requested();) {
            subfolders.clear();
            if (const Descriptor folder = openFolder(AT_FDCWD, path.path().constData())) {
                auto assets = std::make_shared<AssetIndex::Folder>(std::string(path.view()));
                readFolder(
                    folder.number(), buffer.get(), nullptr,
                    [&](std::string_view name) { subfolders.push_back(path.child(name)); },
                    [&](const AssetIndex::File& file) { assets->add(file); });
                if (assets->size() > 0) {
                    // At once, not all at the end: what one folder gives back, the next takes.
                    assets->finish();
                    found.push_back(std::move(assets));
                }
            }
            goesDown = !subfolders.empty();
            if (goesDown) {
                path = std::move(subfolders.back());
                subfolders.pop_back();
            }
            if (!subfolders.empty())
                queue.add(subfolders);
        }
        queue.done();
    }
}

} // namespace

bool isPrunedName(std::string_view name) {
    return std::ranges::find(prunedNames, name) != prunedNames.end();
}

bool isPackageName(std::string_view name) {
    return isPackage(name);
}

bool isInvisibleFolder(std::string_view name) {
    return name.starts_with('.') || isPrunedName(name) || isPackageName(name);
}

void walk(const Location& root, const std::function<void(const Asset&)>& body) {
    const auto buffer = std::make_unique<char[]>(bufferSize);
    std::vector<Location> waiting{root};
    while (!waiting.empty()) {
        const Location path = std::move(waiting.back());
        waiting.pop_back();
        const Descriptor folder = openFolder(AT_FDCWD, path.path().constData());
        if (!folder)
            continue;
        const auto firstChild = qsizetype(waiting.size());
        readFolder(
            folder.number(), buffer.get(), nullptr, [&](std::string_view name) { waiting.push_back(path.child(name)); },
            [&](const AssetIndex::File& file) { body(assetOf(path, file)); });
        // The stack gives the last one first; the order is the file system's.
        std::reverse(waiting.begin() + firstChild, waiting.end());
    }
}

AssetIndex index(const QList<Location>& roots, int workers, std::stop_token stop) {
    FolderQueue queue({roots.begin(), roots.end()});
    std::vector<Folders> found{size_t(std::max(workers, 1))};
    {
        std::vector<std::jthread> helpers;
        for (size_t i = 1; i < found.size(); ++i)
            helpers.emplace_back([&, i] { indexFolders(queue, stop, found[i]); });
        indexFolders(queue, stop, found[0]);
    }
    for (size_t i = 1; i < found.size(); ++i)
        std::ranges::move(found[i], std::back_inserter(found[0]));
    return AssetIndex(std::move(found[0]));
}

Listing list(const Location& folder, const AssetIndex::Folder* known) {
    Listing listing;
    const Descriptor open(::open(folder.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!open)
        return listing;
    if (known)
        listing.assets.reserve(qsizetype(known->size()));
    const auto buffer = std::make_unique<char[]>(bufferSize);
    readFolder(
        open.number(), buffer.get(), known, [&](std::string_view name) { listing.folders.append(folder.child(name)); },
        [&](const AssetIndex::File& file) { listing.assets.append(assetOf(folder, file)); });
    NaturalOrder::shared().sort(listing.folders, [](const Location& location) { return location.lastComponent(); });
    return listing;
}

bool isInsidePruned(const Location& url, const Location& root) {
    const Location inner = url.canonical();
    const Location outer = root.canonical();
    const auto depth = outer.path() == "/" ? 0 : outer.path().count('/');
    const QList<QByteArray> components = inner.path().mid(1).split('/');
    for (qsizetype i = depth; i < components.size(); ++i) {
        const QByteArray& name = components[i];
        if (name.startsWith('.') || isPrunedName({name.constData(), size_t(name.size())}))
            return true;
    }
    return false;
}

} // namespace lumbra::Scanner
