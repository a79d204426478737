// SPDX-License-Identifier: GPL-3.0-or-later
#include "Scanner.h"

#include "core/Stars.h"
#include "platform/FileTypes.h"
#include "platform/NaturalOrder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <cstring>
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

class OpenFolder {
public:
    OpenFolder(const char* path, int extraFlags)
        : m_fd(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | extraFlags)) {}
    ~OpenFolder() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Q_DISABLE_COPY_MOVE(OpenFolder)

    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }

private:
    int m_fd;
};

bool isUtf8(std::string_view name) {
    return QByteArrayView(name.data(), qsizetype(name.size())).isValidUtf8();
}

// Reads one folder: `onFolder(name)` for what a walk would enter, `onFile(File)` for each asset. Names point into the
// buffer and hold until the call returns. What is hidden, pruned or of no kind falls out before it costs a system call.
template <typename OnFolder, typename OnFile>
void readFolder(int fd, char* buffer, OnFolder onFolder, OnFile onFile) {
    for (;;) {
        const long filled = ::syscall(SYS_getdents64, fd, buffer, bufferSize);
        if (filled <= 0)
            return;
        for (long offset = 0; offset < filled;) {
            const auto* entry = reinterpret_cast<const DirectoryEntry*>(buffer + offset);
            const char* const terminated = buffer + offset + offsetof(DirectoryEntry, name);
            const std::string_view name(terminated);
            offset += entry->length;
            if (name.starts_with('.'))
                continue;
            // Some file systems do not tell the type; then only statx can.
            const bool untold = entry->type == DT_UNKNOWN;
            if (entry->type == DT_DIR) {
                if (!isInvisibleFolder(name) && isUtf8(name))
                    onFolder(name);
                continue;
            }
            const auto kind = assetKindOfName(name);
            if (!untold && (entry->type != DT_REG || !kind))
                continue;
            struct statx facts;
            if (::statx(fd, terminated, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, STATX_TYPE | STATX_SIZE | STATX_MTIME,
                        &facts)
                != 0)
                continue;
            if (S_ISDIR(facts.stx_mode)) {
                if (!isInvisibleFolder(name) && isUtf8(name))
                    onFolder(name);
                continue;
            }
            if (!S_ISREG(facts.stx_mode) || !kind || !isUtf8(name))
                continue;
            AssetIndex::File file{name, *kind, 0, Date::distantPast(), Stars::readAt(fd, terminated)};
            if (facts.stx_mask & STATX_SIZE)
                file.size = qint64(facts.stx_size);
            if (facts.stx_mask & STATX_MTIME)
                file.modified = {double(facts.stx_mtime.tv_sec) + facts.stx_mtime.tv_nsec * 1e-9};
            onFile(file);
        }
    }
}

Asset assetOf(const Location& folder, const AssetIndex::File& file) {
    return {folder.child(file.name), file.kind, file.size, file.modified, file.starred};
}

std::string childPath(const std::string& folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path += folder;
    if (!path.ends_with('/'))
        path += '/';
    path += name;
    return path;
}

// The folders still to be read, shared by the workers. A worker keeps going down by itself and hands over what it finds
// beside its way, so that the lock is taken once a folder and not once an entry.
class FolderQueue {
public:
    explicit FolderQueue(std::vector<std::string> roots) : m_waiting(std::move(roots)) {}

    // Blocks until there is a folder; false when all are read and nobody can find more.
    bool take(std::string& folder) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_busy == 0; });
        if (m_waiting.empty())
            return false;
        folder = std::move(m_waiting.back());
        m_waiting.pop_back();
        ++m_busy;
        return true;
    }

    void add(std::vector<std::string>& folders) {
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
    std::vector<std::string> m_waiting;
    int m_busy = 0;
};

using Folders = std::vector<std::shared_ptr<AssetIndex::Folder>>;

void indexFolders(FolderQueue& queue, const std::stop_token& stop, Folders& found) {
    const auto buffer = std::make_unique<char[]>(bufferSize);
    std::vector<std::string> subfolders;
    std::string path;
    while (queue.take(path)) {
        for (bool goesDown = true; goesDown && !stop.stop_requested();) {
            subfolders.clear();
            if (const OpenFolder folder(path.c_str(), O_NOFOLLOW); folder.isOpen()) {
                auto assets = std::make_shared<AssetIndex::Folder>(path);
                readFolder(
                    folder.fd(), buffer.get(),
                    [&](std::string_view name) { subfolders.push_back(childPath(path, name)); },
                    [&](const AssetIndex::File& file) { assets->add(file); });
                if (assets->size() > 0)
                    found.push_back(std::move(assets));
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
        const OpenFolder folder(path.path().constData(), O_NOFOLLOW);
        if (!folder.isOpen())
            continue;
        const auto firstChild = qsizetype(waiting.size());
        readFolder(
            folder.fd(), buffer.get(), [&](std::string_view name) { waiting.push_back(path.child(name)); },
            [&](const AssetIndex::File& file) { body(assetOf(path, file)); });
        // The stack gives the last one first; the order is the file system's.
        std::reverse(waiting.begin() + firstChild, waiting.end());
    }
}

AssetIndex index(const QList<Location>& roots, int workers, std::stop_token stop) {
    std::vector<std::string> paths;
    for (const Location& root : roots)
        paths.emplace_back(root.view());
    FolderQueue queue(std::move(paths));
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

Listing list(const Location& folder) {
    Listing listing;
    const OpenFolder open(folder.path().constData(), 0);
    if (!open.isOpen())
        return listing;
    const auto buffer = std::make_unique<char[]>(bufferSize);
    readFolder(
        open.fd(), buffer.get(), [&](std::string_view name) { listing.folders.append(folder.child(name)); },
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
