// Files that other programs drop on the page, on folders and on the path.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Dragged.h"
#include "Pane.h"
#include "support/Strings.h"

#include <QDir>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr QPoint emptyPage(600, 500);

} // namespace

class TestBrowserDrops : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void filesFromOutsideAreCopiedIntoTheFolderOnView() {
        Pane pane;
        pane.file("p/1.txt");
        const Location outside = pane.home.file("desk/new.txt");
        pane.open(Place::folder(pane.folder("p")));
        Dragged dragged(pane.view.get(), {outside});
        QVERIFY(dragged.move(emptyPage));
        QCOMPARE(dragged.offered, Qt::CopyAction);
        // A copy, so that the other program takes nothing away.
        QCOMPARE(dragged.drop(emptyPage), Qt::CopyAction);
        QTRY_VERIFY(pane.tile("AssetTile", u"new.txt"_qs));
        QVERIFY(outside.exists());
    }

    void aDropAnywhereOnThePageCounts_data() {
        QTest::addColumn<QPoint>("at");
        QTest::newRow("toolbar") << QPoint(500, 26);
        QTest::newRow("header") << QPoint(900, 70);
        QTest::newRow("a tile") << QPoint(100, 200);
        QTest::newRow("status line") << QPoint(300, 690);
    }
    void aDropAnywhereOnThePageCounts() {
        QFETCH(QPoint, at);
        Pane pane;
        pane.file("p/1.txt");
        const Location outside = pane.home.file("desk/new.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QCOMPARE(Dragged(pane.view.get(), {outside}).drop(at), Qt::CopyAction);
        QTRY_VERIFY(pane.folder("p/new.txt").exists());
    }

    void otherPagesTakeNoFiles_data() {
        QTest::addColumn<QString>("page");
        QTest::newRow("recent") << u"recent"_qs;
        QTest::newRow("starred") << u"starred"_qs;
        QTest::newRow("group") << u"group"_qs;
    }
    void otherPagesTakeNoFiles() {
        QFETCH(QString, page);
        Pane pane;
        pane.file("p/1.txt");
        const Location outside = pane.home.file("desk/new.txt");
        pane.open(Place::recent());
        if (page == u"starred")
            pane.library->setPlace(Place::starred());
        if (page == u"group")
            pane.library->setPlace(Place::group(pane.library->newGroup(u"G"_qs, {u"p"_qs}).id));
        QTRY_COMPARE(pane.browser->page(), page);
        Dragged dragged(pane.view.get(), {outside});
        QVERIFY(!dragged.move(emptyPage));
        QCOMPARE(dragged.drop(emptyPage), Qt::IgnoreAction);
        QVERIFY(!pane.browser->drop({outside.toUrl()}));
        QVERIFY(outside.exists());
    }

    void textOfAnotherProgramIsNoFile() {
        Pane pane;
        pane.file("p/sub/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        Dragged text(pane.view.get(), u"lumbra-project:p"_qs);
        QVERIFY(!text.move(emptyPage));
        QVERIFY(!text.move(Pane::centre(pane.items("FolderTile").first())));
    }

    void onlyFilesOfThisMachineAreGreeted_data() {
        QTest::addColumn<QList<QUrl>>("urls");
        QTest::addColumn<bool>("taken");
        const QUrl web(u"https://example.com/a.png"_qs);
        const QUrl file(u"file:///tmp/a.png"_qs);
        QTest::newRow("a web address") << QList{web} << false;
        QTest::newRow("a file of another machine") << QList{QUrl(u"file://elsewhere/tmp/a.png"_qs)} << false;
        QTest::newRow("a file") << QList{file} << true;
        QTest::newRow("a file of this machine by name") << QList{QUrl(u"file://localhost/tmp/a.png"_qs)} << true;
        QTest::newRow("a file among web addresses") << QList{web, file} << true;
    }
    void onlyFilesOfThisMachineAreGreeted() {
        QFETCH(QList<QUrl>, urls);
        QFETCH(bool, taken);
        Pane pane;
        pane.file("p/a/sub/1.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        pane.settle();
        Dragged dragged(pane.view.get(), urls);
        QCOMPARE(dragged.move(emptyPage), taken);
        QCOMPARE(dragged.move(Pane::centre(pane.items("FolderTile").first())), taken);
        pane.settle();
        QCOMPARE(bool(pane.control("Label", u"Move here"_qs)), taken);
        const QQuickItem* const step = pane.items("StepButton").first();
        QCOMPARE(dragged.move(Pane::centre(step)), taken);
        QCOMPARE(step->property("targeted").toBool(), taken);
        if (!taken)
            QCOMPARE(dragged.drop(emptyPage), Qt::IgnoreAction);
    }

    void whatIsNoFileOfThisMachineIsLeftOut() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QVERIFY(pane.browser->drop({QUrl(u"https://example.com/a.png"_qs), QUrl(u"file://elsewhere/tmp/a.png"_qs)}));
        QVERIFY(!pane.library->lastError());
        QCOMPARE(QDir(pane.folder("p").toString()).entryList(QDir::Files), strings({"1.txt"}));
    }

    void aFolderTileTakesFilesAndSaysSo() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.file("p/sub/2.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        QTRY_VERIFY(pane.tile("AssetTile", u"1.txt"_qs));
        const QQuickItem* const folder = pane.items("FolderTile").first();
        Dragged dragged(pane.view.get(), {file});
        QVERIFY(dragged.move(emptyPage));
        QVERIFY(!pane.control("Label", u"Move here"_qs));
        QVERIFY(dragged.move(Pane::centre(folder)));
        QVERIFY(folder->property("targeted").toBool());
        QTRY_VERIFY(pane.control("Label", u"Move here"_qs));
        dragged.leave();
        QTRY_VERIFY(!pane.control("Label", u"Move here"_qs));
        QVERIFY(file.exists());
        dragged.drop(Pane::centre(folder));
        // A file of the library is moved there.
        QTRY_VERIFY(pane.folder("p/sub/1.txt").exists() && !file.exists());
        QVERIFY(!folder->property("targeted").toBool());
        QTRY_VERIFY(!pane.tile("AssetTile", u"1.txt"_qs));
    }

    void aStepOfThePathTakesFilesIntoItsFolder() {
        Pane pane;
        const Location file = pane.file("p/a/b/1.txt");
        pane.open(Place::folder(pane.folder("p/a/b")));
        QTRY_COMPARE(pane.items("StepButton").size(), 3);
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        pane.settle();
        const QQuickItem* const project = pane.items("StepButton").first();
        Dragged dragged(pane.view.get(), {file});
        QVERIFY(dragged.move(Pane::centre(project)));
        QVERIFY(project->property("targeted").toBool());
        dragged.drop(Pane::centre(project));
        QTRY_VERIFY(pane.folder("p/1.txt").exists() && !file.exists());
        QVERIFY(!project->property("targeted").toBool());
    }

    void theLastStepIsThePage() {
        Pane pane;
        pane.file("p/a/1.txt");
        const Location outside = pane.home.file("desk/new.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        pane.settle();
        Dragged(pane.view.get(), {outside}).drop(Pane::centre(pane.items("StepButton").last()));
        QTRY_VERIFY(pane.folder("p/a/new.txt").exists());
        QVERIFY(!pane.folder("p/new.txt").exists());
    }

    void theStepOfAGroupTakesNoFiles() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        pane.library->newGroup(u"Films"_qs, {u"p"_qs});
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        pane.browser->path()->drop(0, {file.toUrl()});
        pane.browser->path()->drop(9, {file.toUrl()});
        QVERIFY(file.exists());
        QVERIFY(!pane.library->lastError());
    }

    void aFileDroppedWhereItIsStays() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        Dragged(pane.view.get(), {file}).drop(emptyPage);
        QVERIFY(file.exists());
        QCOMPARE(QDir(pane.folder("p").toString()).entryList(QDir::Files), strings({"1.txt"}));
    }

    void filesThatAreGoneAreToldOf() {
        Pane pane;
        pane.file("p/1.txt");
        const Location gone = pane.home.file("desk/gone.txt");
        const Location there = pane.home.file("desk/there.txt");
        pane.open(Place::folder(pane.folder("p")));
        Dragged dragged(pane.view.get(), {gone, there});
        dragged.move(emptyPage);
        QVERIFY(QFile::remove(gone.toString()));
        dragged.drop(emptyPage);
        QTRY_VERIFY(pane.library->lastError());
        // The others are not held back by it.
        QTRY_VERIFY(pane.folder("p/there.txt").exists());
    }

    void tenThousandFilesArrive() {
        Pane pane;
        pane.file("p/1.txt");
        QList<Location> files;
        for (int n = 0; n < 10'000; ++n)
            files.append(pane.home.file("Library/q/" + std::to_string(n) + ".txt"));
        pane.open(Place::folder(pane.folder("p")));
        Dragged(pane.view.get(), files).drop(emptyPage);
        QTRY_COMPARE(pane.browser->assets().size(), 10'001);
        QVERIFY(!pane.library->lastError());
    }
};

QTEST_MAIN(TestBrowserDrops)
#include "tst_browserdrops.moc"
