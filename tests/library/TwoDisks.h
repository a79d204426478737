// What the tests of transfers share: a library on the disk of the home, a second disk in memory, and a folder that
// takes long enough to be met half-way.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OpenLibrary.h"
#include "support/FileSystems.h"

#include <QDirIterator>
#include <QSignalSpy>

namespace lumbra {

// Of a folder that takes long enough to be met half-way: its files cost system calls, which no machine makes fast.
inline constexpr int shots = 20000; // enough to be met half-way on a quick machine too
inline constexpr qsizetype shotBytes = 100;

inline Location shot(const Location& folder, int number) {
    return folder.child("shot-" + std::to_string(number) + ".png");
}

inline Location filled(const Location& folder) {
    QDir().mkpath(folder.toString());
    const QByteArray bytes(shotBytes, 's');
    for (int number = 0; number < shots; ++number) {
        QFile file(shot(folder, number).toString());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot fill %s", folder.path().constData());
    }
    marked(shot(folder, 0));
    marked(shot(folder, shots - 1));
    return folder;
}

inline bool isWhole(const Location& folder) {
    return entriesOf(folder).size() == shots && Stars::read(shot(folder, 0)) && Stars::read(shot(folder, shots - 1))
           && bytesOf(shot(folder, shots / 2)).size() == shotBytes;
}

inline QStringList leftoversBelow(const Location& folder) {
    QStringList found;
    QDirIterator entries(folder.toString(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        if (entries.fileName().startsWith(QLatin1String(".lumbra-part-")))
            found.append(entries.filePath());
    }
    return found;
}

class TwoDisks {
protected:
    // False when there is no second file system.
    bool openDisks() {
        m_memory = std::make_unique<SecondDisk>();
        if (!m_memory->isThere())
            return false;
        m_library = std::make_unique<OpenLibrary>(m_home);
        return true;
    }
    void closeDisks() {
        m_library.reset();
        m_memory.reset();
    }

    // In memory, on another file system.
    Location far() const { return m_memory->path(); }
    Location farFile(const char* relative, const QByteArray& bytes = "x") const {
        const Location file = far().child(std::string_view(relative));
        QDir().mkpath(file.parent().toString());
        QFile opened(file.toString());
        if (!opened.open(QIODevice::WriteOnly) || opened.write(bytes) != bytes.size())
            qFatal("cannot write %s", file.path().constData());
        return file;
    }

    // A project whose folder is in memory: what is brought there from another project crosses file systems.
    Location farProject() const {
        const Location folder = far().child("project");
        QDir().mkpath(folder.toString());
        if (::symlink(folder.path().constData(), m_library->at("far").path().constData()) != 0)
            qFatal("cannot link");
        return folder;
    }

    bool meetHalfWay() const {
        QSignalSpy changed(&**m_library, &Library::transferChanged);
        const auto isHalfWay = [this] {
            const auto progress = (*m_library)->transfer();
            return progress && progress->bytes > 0 && progress->bytes < progress->byteCount;
        };
        while (!isHalfWay())
            if (!changed.wait(10'000))
                return false;
        return true;
    }

    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;

private:
    std::unique_ptr<SecondDisk> m_memory;
};

} // namespace lumbra
