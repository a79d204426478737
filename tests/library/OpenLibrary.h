// What the tests of the library's operations share: a library of its own for each test function in the program's one
// home, since the desktop's trash keeps to the home that it saw first; and files that carry a star and a note.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Notes.h"
#include "core/Stars.h"
#include "library/Library.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

#include <memory>

namespace lumbra {

class OpenLibrary {
public:
    explicit OpenLibrary(const TestHome& home)
        : m_home(home), m_folder("run-" + std::to_string(++s_count)), m_root(home.folder(m_folder + "/Library")) {}

    const Location& root() const { return m_root; }
    Location at(std::string_view relative) const { return m_root.child(relative); }

    // In the library.
    Location folder(const std::string& relative) const { return m_home.folder(m_folder + "/Library/" + relative); }
    Location file(const std::string& relative, const QByteArray& bytes = "x") const {
        return m_home.file(m_folder + "/Library/" + relative, bytes);
    }

    // Beside the library.
    Location outsideFolder(const std::string& relative) const { return m_home.folder(m_folder + "/" + relative); }
    Location outside(const std::string& relative, const QByteArray& bytes = "x") const {
        return m_home.file(m_folder + "/" + relative, bytes);
    }

    // Begins the walk of what has been made so far, and ends with it.
    void open() {
        beginToOpen();
        waitForIndex();
    }
    void beginToOpen() { m_library = std::make_unique<Library>(m_root, true); }
    void waitForIndex() const {
        if (!QTest::qWaitFor([this] { return !m_library->indexing(); }, patience))
            qFatal("the first walk does not end");
    }
    void close() { m_library.reset(); }

    Library* operator->() const { return m_library.get(); }
    Library& operator*() const { return *m_library; }

    Project project(const char* name) const {
        const auto all = m_library->projects();
        for (const Project& candidate : all)
            if (candidate.name == QString::fromUtf8(name))
                return candidate;
        qFatal("no project %s", name);
    }

    QString error() const { return m_library->lastError().value_or(QString()); }

private:
    static inline int s_count = 0;

    const TestHome& m_home;
    std::string m_folder;
    Location m_root;
    std::unique_ptr<Library> m_library;
};

// A file's star and its note as bytes.
struct Carried {
    std::optional<Date> star;
    QByteArray note;

    static Carried of(const Location& file) {
        return {Stars::read(file), ExtendedAttributes::read(file, Notes::attribute).value_or(QByteArray())};
    }

    friend bool operator==(const Carried&, const Carried&) = default;
};

inline Location marked(const Location& file, const char* prompt = "a fox") {
    AgentNote note;
    note.prompt = QString::fromUtf8(prompt);
    if (!Stars::write(file, true) || !Notes::write(note, file))
        qFatal("cannot mark %s", file.path().constData());
    return file;
}

inline QByteArray bytesOf(const Location& file) {
    QFile opened(file.toString());
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("(none)");
}

// Names in a folder, hidden ones included, in plain order.
inline QStringList entriesOf(const Location& folder) {
    return QDir(folder.toString())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

inline QList<Location> resultOf(const QFuture<QList<Location>>& future) {
    if (!QTest::qWaitFor([&] { return future.isFinished(); }, patience) || future.resultCount() != 1)
        qFatal("an operation does not end");
    return future.result();
}

} // namespace lumbra
