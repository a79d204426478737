// What lies in a folder, as a panel lists it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <stop_token>

namespace lumbra {

struct FolderContents {
    struct Entry {
        QString name;
        bool isFolder = false;
    };

    // More entries than these are not read, and none for longer than these milliseconds.
    static constexpr qsizetype most = 200'000;
    static constexpr qint64 longest = 5000;

    // Reads the disk, which may take its time; never on the main thread. A link counts as what it leads to; links that
    // lead nowhere, names that are no text, and whatever is neither file nor folder are left out.
    static FolderContents read(const QString& folder, const std::stop_token& stop);

    QString folder;       // absolute
    QList<Entry> entries; // folders first, both sorted by name with numbers by their value
    bool isThere = false; // as a folder that can be read
    bool isCut = false;   // not all of it was read
};

} // namespace lumbra
