// A library in a home of its own, and the palette over it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/palette/Palette.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QSemaphore>
#include <QTest>

#include <memory>

namespace lumbra {

// To be inherited by a test, whose `init` and `cleanup` call those of this.
class PaletteFixture {
protected:
    void make() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("Library/site");
        m_home->folder("Library/film");
    }

    void takeDown() {
        m_tester.reset();
        m_palette.reset();
        m_library.reset();
        m_home.reset();
    }

    Location at(const char* relative) const { return m_library->root().child(std::string_view(relative)); }
    Location file(const char* relative, double modified = 1000) const {
        const Location made = m_home->file(std::string("Library/") + relative);
        TestHome::touch(made, modified);
        return made;
    }
    void type(const char* text) { m_palette->setQuery(QString::fromUtf8(text)); }
    // Once only, unlike the macros that try again.
    static bool acquired(QSemaphore& semaphore) {
        return QTest::qWaitFor([&] { return semaphore.tryAcquire(); }, patience);
    }
    // Opens the library that the files make, and the palette over it; later only the palette, anew.
    void open() {
        if (!m_library) {
            m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
            QTRY_VERIFY(!m_library->indexing());
            m_palette = std::make_unique<Palette>(m_library.get());
            m_tester = std::make_unique<QAbstractItemModelTester>(
                m_palette->results(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        }
        m_library->setPaletteOpen(true);
    }

    // The rows as "section: title, title".
    QStringList rows() const {
        QStringList all;
        for (const PaletteResult& row : m_palette->results()->results()) {
            if (!row.section.isEmpty())
                all.append(row.section + u':');
            all.last() += u' ' + row.title + u',';
        }
        for (QString& section : all)
            section.chop(1);
        return all;
    }

    QStringList titles(PaletteResult::Kind kind) const {
        QStringList all;
        for (const PaletteResult& row : m_palette->results()->results())
            if (row.kind == kind)
                all.append(row.title);
        return all;
    }

    // -1 if there is none.
    int rowOf(const char* title) const {
        const QList<PaletteResult>& all = m_palette->results()->results();
        for (int row = 0; row < all.size(); ++row)
            if (all[row].title == QString::fromUtf8(title))
                return row;
        return -1;
    }

    void highlight(const char* title) {
        QTRY_VERIFY(rowOf(title) >= 0);
        while (m_palette->highlighted() < rowOf(title))
            m_palette->press(Qt::Key_Down, {});
    }

    // Lets the insight store find the files for this query, and nothing for any other.
    void insights(const QString& answered, const QList<Location>& found) {
        QStringList paths;
        for (const Location& url : found)
            paths.append(url.toString());
        m_palette->setInsights(
            {.search = [=](const QString& query, int) { return query == answered ? paths : QStringList(); },
             .title = [](const Asset&) { return QString(); }});
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Palette> m_palette;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

} // namespace lumbra
