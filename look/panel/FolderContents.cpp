// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderContents.h"

#include <QCollator>
#include <QElapsedTimer>
#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace lumbra {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

// Absent for what a panel does not list. Asks for the entry itself only where the folder does not tell.
std::optional<bool> isFolder(DIR* folder, const dirent& entry) {
    if (entry.d_type == DT_DIR || entry.d_type == DT_REG)
        return entry.d_type == DT_DIR;
    struct stat facts;
    if ((entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        || ::fstatat(::dirfd(folder), entry.d_name, &facts, 0) != 0)
        return std::nullopt;
    if (S_ISDIR(facts.st_mode) || S_ISREG(facts.st_mode))
        return S_ISDIR(facts.st_mode);
    return std::nullopt;
}

void sort(QList<FolderContents::Entry>& entries) {
    QCollator collator(QLocale::English); // which knows numbers whatever the locale
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);

    struct Keyed {
        QCollatorSortKey key;
        FolderContents::Entry entry;
    };
    std::vector<Keyed> keyed; // a key is made once, and not at each comparison
    keyed.reserve(size_t(entries.size()));
    for (FolderContents::Entry& entry : entries)
        keyed.push_back({collator.sortKey(entry.name), std::move(entry)});
    std::ranges::sort(keyed, [](const Keyed& a, const Keyed& b) {
        return a.entry.isFolder != b.entry.isFolder ? a.entry.isFolder : a.key < b.key;
    });
    std::ranges::transform(keyed, entries.begin(), [](Keyed& from) { return std::move(from.entry); });
}

} // namespace

FolderContents FolderContents::read(const QString& folder, const std::stop_token& stop) {
    FolderContents contents;
    contents.folder = folder;
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return contents;
    const std::unique_ptr<DIR, CloseFolder> opened(::fdopendir(descriptor));
    if (!opened) {
        ::close(descriptor);
        return contents;
    }
    contents.isThere = true;
    QElapsedTimer clock;
    clock.start();
    while (const dirent* const entry = ::readdir(opened.get())) {
        if (stop.stop_requested() || contents.entries.size() == most || clock.hasExpired(longest)) {
            contents.isCut = true;
            break;
        }
        const QByteArrayView bytes(entry->d_name);
        if (bytes == "." || bytes == ".." || !bytes.isValidUtf8())
            continue;
        if (const auto folderIt = isFolder(opened.get(), *entry))
            contents.entries.append({QString::fromUtf8(bytes), *folderIt});
    }
    sort(contents.entries);
    return contents;
}

} // namespace lumbra
