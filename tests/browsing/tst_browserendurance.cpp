// What a page lives through: folders that vanish, thousands of files at once, names in any script.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pane.h"
#include "support/Strings.h"

#include <QDir>
#include <QtTest>

using namespace lumbra;

namespace {

// All tiles that there are, those kept to be used again included.
QSet<QObject*> delegates(const QQuickItem* below) {
    QSet<QObject*> found;
    for (QQuickItem* item : below->childItems()) {
        if (QByteArray(item->metaObject()->className()).startsWith("AssetTile"))
            found.insert(item);
        found += delegates(item);
    }
    return found;
}

} // namespace

class TestBrowserEndurance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void aFolderThatVanishesLeavesACalmPage() {
        Pane pane;
        pane.file("p/sub/1.txt");
        pane.file("p/other/2.txt");
        pane.open(Place::folder(pane.folder("p/sub")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        pane.click(pane.items("AssetTile").first());
        QVERIFY(QDir(pane.folder("p/sub").toString()).removeRecursively());
        QTRY_VERIFY(pane.control("Label", u"Nothing here yet"_qs));
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
        QVERIFY(!pane.library->lastError());
        QVERIFY(pane.browser->selected().isEmpty());
        pane.press(Qt::Key_Down);
        pane.press(Qt::Key_Space);
        QVERIFY(!pane.library->playing());
        // The way out is where it was.
        pane.click(pane.items("StepButton").first());
        QTRY_VERIFY(pane.tile("FolderTile", u"other"_qs));
        // And when it comes back it is there.
        pane.library->setPlace(Place::folder(pane.folder("p/sub")));
        QTRY_VERIFY(pane.control("Label", u"Nothing here yet"_qs));
        pane.file("p/sub/3.txt");
        QTRY_VERIFY(pane.tile("AssetTile", u"3.txt"_qs));
    }

    void aWholeProjectThatVanishes() {
        Pane pane;
        pane.file("p/1.txt");
        pane.file("q/2.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QVERIFY(QDir(pane.folder("p").toString()).removeRecursively());
        QTRY_VERIFY(pane.control("Label", u"Nothing here yet"_qs));
        QVERIFY(!pane.library->lastError());
    }

    void aProjectThatIsRenamedOutsideWhileItsFileIsSelected() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        pane.click(pane.items("AssetTile").first());
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        QVERIFY(QDir().rename(pane.folder("p").toString(), pane.folder("q").toString()));
        QTRY_VERIFY(pane.control("Label", u"Nothing here yet"_qs));
        QVERIFY(pane.browser->selected().isEmpty());
        // What keys and menus would do is done to nothing.
        for (const Qt::Key key : {Qt::Key_S, Qt::Key_Space, Qt::Key_Delete, Qt::Key_Down, Qt::Key_Escape})
            pane.press(key);
        QVERIFY(!pane.library->lastError());
        QVERIFY(QFile::exists(pane.folder("q/1.txt").toString()));
        pane.library->setPlace(Place::folder(pane.folder("q")));
        QTRY_VERIFY(pane.tile("AssetTile", u"1.txt"_qs));
    }

    void aSelectedFileThatIsRenamedOutsideLeavesWhatIsSelected() {
        Pane pane;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        pane.click(pane.items("AssetTile").first());
        pane.browser->selectAll();
        QCOMPARE(pane.browser->status(), u"2 selected · 2 bytes"_qs);
        QVERIFY(QFile::rename(pane.folder("p/1.txt").toString(), pane.folder("p/3.txt").toString()));
        QTRY_VERIFY(pane.tile("AssetTile", u"3.txt"_qs) && !pane.tile("AssetTile", u"1.txt"_qs));
        QCOMPARE(pane.selected(), strings({"2.txt"}));
        // Its path is still counted, its size is not.
        QCOMPARE(pane.browser->status(), u"2 selected · 1 byte"_qs);
        // The anchor went with it, so a step begins at the top.
        pane.press(Qt::Key_Up);
        QCOMPARE(pane.selected(), strings({"3.txt"}));
    }

    void fiveThousandFilesLandInTheFolderOnView() {
        Pane pane;
        pane.file("p/0 first.txt", -100'000); // newer than all, so that its tile stays where it is
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QSignalSpy loads(pane.library.get(), &Library::revisionChanged);
        QElapsedTimer landing;
        landing.start();
        for (int n = 0; n < 5'000; ++n)
            pane.home.file("Library/p/" + std::to_string(n) + ".txt");
        const qint64 took = landing.elapsed();
        QTRY_COMPARE(pane.browser->assets().size(), 5'001);
        // They come in batches, not one by one.
        QVERIFY2(loads.size() < 20 + took / 100, qPrintable(QString::number(loads.size())));
        QVERIFY(pane.tile("AssetTile", u"0 first.txt"_qs));
        QVERIFY(!pane.library->lastError());
    }

    void aReloadMakesTilesOnlyForWhatIsNew_data() {
        QTest::addColumn<int>("files");
        QTest::newRow("few") << 40;
        QTest::newRow("more than are compared one by one") << 21'000;
    }
    void aReloadMakesTilesOnlyForWhatIsNew() {
        QFETCH(int, files);
        Pane pane;
        for (int n = 0; n < files; ++n)
            pane.home.file("Library/p/" + std::to_string(n) + ".txt");
        pane.open(Place::folder(pane.folder("p")));
        pane.browser->settings()->setSort(SortOrder::name);
        QTRY_COMPARE(pane.browser->assets().size(), files);
        QTRY_VERIFY(pane.tile("AssetTile", u"0.txt"_qs));
        pane.settle();
        const QSet<QObject*> before = delegates(pane.view->contentItem());
        QVERIFY(before.size() > 20);
        // At the end of the page.
        pane.home.file("Library/p/zz.txt");
        QTRY_COMPARE(pane.browser->assets().size(), files + 1);
        pane.settle();
        const QSet<QObject*> after = delegates(pane.view->contentItem());
        QVERIFY2((after - before).size() <= 1, qPrintable(QString::number((after - before).size())));
        QVERIFY((before - after).isEmpty());
        // At its beginning: every tile shows another file, and still none is made for it.
        pane.home.file("Library/p/  first.txt");
        QTRY_COMPARE(pane.browser->assets().size(), files + 2);
        QTRY_VERIFY(pane.tile("AssetTile", u"  first.txt"_qs));
        pane.settle();
        const QSet<QObject*> last = delegates(pane.view->contentItem());
        QVERIFY2((last - after).size() <= 1, qPrintable(QString::number((last - after).size())));
        // A change elsewhere concerns no tile.
        const QList<QQuickItem*> shown = pane.items("AssetTile");
        pane.file("q/elsewhere.txt");
        QTRY_VERIFY(pane.library->index().contains(pane.folder("q/elsewhere.txt")));
        QCOMPARE(pane.items("AssetTile"), shown);
    }

    void namesInAnyScript_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("Hebrew") << u"שלום עולם.txt"_qs;
        QTest::newRow("Arabic") << u"مرحبا بالعالم.txt"_qs;
        QTest::newRow("Chinese") << u"最终版海报设计.txt"_qs;
        QTest::newRow("emoji") << u"🦊🚀 final 👩‍👩‍👧‍👦.txt"_qs;
        QTest::newRow("composed") << u"e\u0301te\u0301.txt"_qs;
        QTest::newRow("as long as a name can be") << QString(251, u'w') + u".txt"_qs;
        QTest::newRow("two lines") << u"one\ntwo.txt"_qs;
        QTest::newRow("markup") << u"<b>bold & co<b>.txt"_qs;
        QTest::newRow("percent") << u"100%41 %s.txt"_qs;
        QTest::newRow("turned round") << u"a\u202Etxt.exe.txt"_qs;
    }
    void namesInAnyScript() {
        QFETCH(QString, name);
        Pane pane;
        const Location file = pane.file((u"p/"_qs + name).toStdString());
        QVERIFY(file.exists());
        pane.file((u"p/"_qs + name.left(60) + u" folder/inside.txt"_qs).toStdString());
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.tile("AssetTile", name));
        QQuickItem* const tile = pane.tile("AssetTile", name);
        pane.click(tile);
        QCOMPARE(pane.selected(), QStringList{name});
        pane.settle();
        // The name keeps to one line below its picture.
        for (const QQuickItem* text : pane.items("TileText"))
            for (const QQuickItem* line : text->childItems())
                QVERIFY(line->height() <= 40 && line->x() + line->width() <= tile->width());
        pane.browser->setSearch(name.toUpper());
        QTRY_COMPARE(pane.browser->assets().size(), 1);
        pane.browser->setSearch({});
        const Location outside = pane.home.folder("Library/q");
        QVERIFY(pane.browser->drop({file.toUrl()}));
        pane.browser->dropInto(outside, {file.toUrl()});
        QTRY_VERIFY(outside.child(QStringView(name)).exists());
    }
};

QTEST_MAIN(TestBrowserEndurance)
#include "tst_browserendurance.moc"
