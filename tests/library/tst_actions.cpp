// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenLibrary.h"
#include "library/Actions.h"
#include "support/TestPanels.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStandardPaths>

using namespace lumbra;

class ActionsTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;
    TestPanels m_panels;

    static Location downloads() { return Location(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)); }

private Q_SLOTS:
    void init() {
        m_library = std::make_unique<OpenLibrary>(m_home);
        m_panels = {};
        Actions::usePanels(&m_panels);
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    }
    void cleanup() {
        Actions::usePanels(nullptr);
        m_library.reset();
    }

    void aCopiedFileIsNamedInTheToast() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.txt");
        library.open();
        Actions::copy({file}, &*library);
        QCOMPARE(library->toast()->text, QStringLiteral("Copied a.txt. Paste it anywhere."));
        QCOMPARE(library->toast()->symbol, std::optional(QStringLiteral("doc.on.doc.fill")));
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls(), QList{file.toUrl()});
    }

    void copiedFilesAreCounted() {
        OpenLibrary& library = *m_library;
        const QList<Location> files{library.file("one/a.txt"), library.file("one/b.txt")};
        library.open();
        Actions::copy(files, &*library);
        QCOMPARE(library->toast()->text, QStringLiteral("Copied 2 files. Paste it anywhere."));
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls().size(), 2);
    }

    void veryManyFilesAreToldOfOnceTheyCanBePasted() {
        OpenLibrary& library = *m_library;
        library.open();
        Actions::copy(QList<Location>(3000, Location(QByteArray("/one/a.txt"))), &*library);
        // They are made in the background, and come back with a later turn of the loop.
        QVERIFY(!library->toast());
        QTRY_VERIFY(library->toast());
        QCOMPARE(library->toast()->text, QStringLiteral("Copied 3000 files. Paste it anywhere."));
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls().size(), 3000);
    }

    void nothingIsCopiedForAnEmptyList() {
        OpenLibrary& library = *m_library;
        library.open();
        Actions::copy({}, &*library);
        QVERIFY(!library->toast());
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    }

    void pathsAreCopiedALineEach() {
        Actions::copyPaths({Location(QByteArray("/a b/c%.png")), Location(QByteArray("/d.png"))});
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("/a b/c%.png\n/d.png"));
        Actions::copyPaths({});
        QCOMPARE(QGuiApplication::clipboard()->text(), QString());
    }

    void importedFilesAreBrought() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.outside("desk/a.png"));
        library.open();
        Actions::importFiles(library.folder("one"), &*library);
        QCOMPARE(m_panels.asked, QStringLiteral("open"));
        QCOMPARE(m_panels.button, QStringLiteral("Add"));
        m_panels.answerFiles({file});
        QTRY_VERIFY(library.at("one/a.png").exists());
        QVERIFY(Carried::of(library.at("one/a.png")) == Carried::of(file));
    }

    void aFolderIsChosenOrNot() {
        std::optional<Location> chosen;
        int answers = 0;
        const Location start(QByteArray("/somewhere"));
        Actions::chooseFolder(QStringLiteral("Move Here"), start, [&](const std::optional<Location>& folder) {
            chosen = folder;
            ++answers;
        });
        QCOMPARE(m_panels.button, QStringLiteral("Move Here"));
        QCOMPARE(m_panels.start, std::optional(start));
        QVERIFY(m_panels.message.isEmpty());
        m_panels.answerFolder(start.child("x"));
        QCOMPARE(chosen, std::optional(start.child("x")));
        m_panels.answerFolder(std::nullopt);
        QVERIFY(!chosen);
        QCOMPARE(answers, 2);
    }

    void oneFileIsExportedToAPath() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png", "new"));
        const Location old = library.outside("out/b.png", "old");
        library.open();
        Actions::exportFiles({file}, &*library);
        QCOMPARE(m_panels.asked, QStringLiteral("save"));
        QCOMPARE(m_panels.name, QStringLiteral("a.png"));
        QCOMPARE(m_panels.start, std::optional(downloads()));
        m_panels.answerPath(old);
        QTRY_COMPARE(bytesOf(old), QByteArray("new"));
        QVERIFY(Carried::of(old) == Carried::of(file));
    }

    void severalFilesAreExportedIntoAFolder() {
        OpenLibrary& library = *m_library;
        const QList<Location> files{library.file("one/a.png"), library.file("one/b.png")};
        library.open();
        Actions::exportFiles(files, &*library);
        QCOMPARE(m_panels.asked, QStringLiteral("folder"));
        QCOMPARE(m_panels.button, QStringLiteral("Export Here"));
        QCOMPARE(m_panels.start, std::optional(downloads()));
        m_panels.answerFolder(std::nullopt);
        QVERIFY(!library->transfer());
        const Location out = library.outsideFolder("out");
        m_panels.answerFolder(out);
        QTRY_COMPARE(entriesOf(out), (QStringList{QStringLiteral("a.png"), QStringLiteral("b.png")}));
    }

    void nothingIsAskedForAnExportOfNothing() {
        OpenLibrary& library = *m_library;
        library.open();
        Actions::exportFiles({}, &*library);
        QVERIFY(m_panels.asked.isEmpty());
    }

    void withoutPanelsNothingHappens() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        Actions::usePanels(nullptr);
        Actions::importFiles(library.at("one"), &*library);
        Actions::exportFiles({file}, &*library);
        Actions::exportFiles({file, file}, &*library);
        Actions::chooseFolder(QStringLiteral("x"), std::nullopt,
                              [](const std::optional<Location>&) { QFAIL("asked"); });
        QVERIFY(!library->transfer());
    }

    void aPanelMayAnswerAfterTheLibraryHasGone() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        Actions::importFiles(library.at("one"), &*library);
        Actions::exportFiles({file}, &*library);
        Actions::exportFiles({file, file}, &*library);
        library.close();
        m_panels.answerFiles({file});
        m_panels.answerPath(library.root().parent().child("x.png"));
        m_panels.answerFolder(library.root().parent());
        QVERIFY(!library.root().parent().child("x.png").exists());
    }
};

QTEST_MAIN(ActionsTest)
#include "tst_actions.moc"
