// What the user does on a page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserWindow.h"
#include "support/Strings.h"

#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

class TestBrowserInteraction : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aChangeOfPlaceClearsTheSelectionAndKeepsTheLists() {
        Window window;
        const Location file = window.file("p/a.png");
        window.home.folder("Library/q");
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 1);
        browser.click(cellOf(file), Qt::NoModifier);
        QCOMPARE(browser.status(), QStringLiteral("1 selected · 1 byte"));
        window.library->setPlace(Place::folder(window.folder("q")));
        QVERIFY(browser.selection().isEmpty());
        QVERIFY(!browser.anchor());
        QVERIFY(!browser.loaded());
        QCOMPARE(browser.assets().size(), 1);
        QVERIFY(!browser.emptyState().shown);
        QTRY_VERIFY(browser.loaded());
        QVERIFY(browser.assets().isEmpty());
        QCOMPARE(browser.emptyState().title, QStringLiteral("Nothing here yet"));
    }

    void aReloadLeavesTheSelectionAlone() {
        Window window;
        const Location file = window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 1);
        QTRY_VERIFY(!window.library->indexing());
        browser.click(cellOf(file), Qt::NoModifier);
        window.file("p/b.png");
        QTRY_COMPARE(browser.assets().size(), 2);
        QCOMPARE(names(browser.selected()), strings({"a.png"}));
        QVERIFY(QFile::remove(file.toString()));
        QTRY_COMPARE(browser.assets().size(), 1);
        QVERIFY(browser.selected().isEmpty());
        QCOMPARE(browser.selection().size(), 1);
    }

    void aPendingRevealSelectsTheFileOnceItsFolderHasLoaded() {
        Window window;
        const Location file = window.file("p/sub/a.png");
        window.file("p/sub/b.png");
        window.open();
        Browser& browser = *window.browser;
        QTRY_VERIFY(browser.loaded());
        browser.settings()->setKindRaw(QStringLiteral("video"));
        browser.setSearch(QStringLiteral("zz"));
        const QSignalSpy scrolled(&browser, &Browser::scrollRequested);
        window.library->setPendingReveal(file);
        window.library->setPlace(Place::folder(file.parent()));
        QCOMPARE(browser.settings()->kindRaw(), QStringLiteral("all"));
        QVERIFY(browser.search().isEmpty());
        QTRY_COMPARE(names(browser.selected()), strings({"a.png"}));
        QVERIFY(!window.library->pendingReveal());
        QCOMPARE(browser.anchor(), std::optional(file));
        QCOMPARE(scrolled.size(), 1);
        QVERIFY(scrolled.first().at(1).toBool());
    }

    void aRevealInTheFolderOnViewNeedsNoLoad() {
        Window window;
        const Location file = window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_VERIFY(window.browser->loaded());
        QTRY_VERIFY(!window.library->indexing());
        window.library->reveal(file);
        QTRY_COMPARE(names(window.browser->selected()), strings({"a.png"}));
    }

    void aRevealThatFindsNothingStaysPending() {
        Window window;
        window.file("p/a.png");
        const Location missing = window.folder("p/missing.png");
        window.open();
        window.library->setPendingReveal(missing);
        window.library->setPlace(Place::folder(window.folder("p")));
        QTRY_VERIFY(window.browser->loaded());
        QVERIFY(window.browser->selection().isEmpty());
        QCOMPARE(window.library->pendingReveal(), std::optional(missing));
    }

    void aShiftClickFromASectionOntoTheShelfIsAPlainClick() {
        Window window;
        const Location starred = window.file("p/starred.png", 10);
        const Location other = window.file("p/other.png", 20);
        star(starred, 1000);
        window.open();
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.shelf().size(), 1);
        QTRY_COMPARE(totalOf(browser), 2);
        browser.click(cellOf(other), Qt::NoModifier);
        browser.click(cellOf(starred, true), Qt::ShiftModifier);
        QCOMPARE(browser.selection(), PathSet{starred});
    }

    void theArrowKeysStepAndScroll() {
        Window window;
        window.file("p/a.png", 10);
        window.file("p/b.png", 20);
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 2);
        const QSignalSpy scrolled(&browser, &Browser::scrollRequested);
        QVERIFY(browser.press(Qt::Key_Down, Qt::NoModifier, false));
        QCOMPARE(names(browser.selected()), strings({"a.png"}));
        QVERIFY(browser.press(Qt::Key_Right, Qt::NoModifier, true));
        QCOMPARE(names(browser.selected()), strings({"b.png"}));
        QVERIFY(browser.press(Qt::Key_Down, Qt::NoModifier, false));
        QCOMPARE(names(browser.selected()), strings({"b.png"}));
        QVERIFY(browser.press(Qt::Key_Up, Qt::NoModifier, false));
        QVERIFY(browser.press(Qt::Key_Left, Qt::NoModifier, false));
        QCOMPARE(names(browser.selected()), strings({"a.png"}));
        QCOMPARE(scrolled.size(), 5);
        QVERIFY(!scrolled.first().at(1).toBool());
    }

    void theKeysOfTheGrid_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("withNothing"); // whether it is handled with nothing selected
        QTest::addColumn<bool>("withOne");
        QTest::addColumn<bool>("held"); // and when it repeats, with a file selected
        const int none = Qt::NoModifier;
        QTest::newRow("space") << int(Qt::Key_Space) << none << false << true << true;
        QTest::newRow("return") << int(Qt::Key_Return) << none << false << true << true;
        QTest::newRow("enter") << int(Qt::Key_Enter) << none << false << true << true;
        QTest::newRow("s") << int(Qt::Key_S) << none << false << true << true;
        QTest::newRow("S") << int(Qt::Key_S) << int(Qt::ShiftModifier) << false << true << true;
        QTest::newRow("left") << int(Qt::Key_Left) << none << true << true << true;
        QTest::newRow("up") << int(Qt::Key_Up) << none << true << true << true;
        QTest::newRow("right") << int(Qt::Key_Right) << none << true << true << true;
        QTest::newRow("down") << int(Qt::Key_Down) << none << true << true << true;
        QTest::newRow("escape") << int(Qt::Key_Escape) << none << true << true << false;
        QTest::newRow("delete") << int(Qt::Key_Delete) << none << true << true << true;
        QTest::newRow("copy") << int(Qt::Key_C) << int(Qt::ControlModifier) << true << true << true;
        QTest::newRow("select all") << int(Qt::Key_A) << int(Qt::ControlModifier) << true << true << true;
        QTest::newRow("another letter") << int(Qt::Key_X) << none << false << false << false;
        QTest::newRow("s with a command") << int(Qt::Key_S) << int(Qt::ControlModifier) << false << false << false;
    }
    void theKeysOfTheGrid() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        Window window;
        const Location file = window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 1);
        const auto handled = [&](bool selected, bool repeated) {
            browser.clickBackground();
            if (selected)
                browser.click(cellOf(file), Qt::NoModifier);
            return browser.press(key, Qt::KeyboardModifiers(modifiers), repeated);
        };
        QTEST(handled(false, false), "withNothing");
        QTEST(handled(true, true), "held");
        QTEST(handled(true, false), "withOne");
    }

    void arrowsStepOverStacks() {
        Window window;
        // Four of the folder stand alone, the others are its stack between them and the file of the other folder.
        for (int n = 1; n <= 6; ++n)
            window.file("p/frames/" + std::to_string(n) + ".png", n);
        window.file("p/last.png", 100);
        window.open();
        Browser& browser = *window.browser;
        QTRY_COMPARE(totalOf(browser), 7);
        QCOMPARE(browser.sections().first().entries.size(), 6);
        for (int n = 1; n <= 4; ++n)
            browser.press(Qt::Key_Right, Qt::NoModifier, false);
        QCOMPARE(names(browser.selected()), strings({"4.png"}));
        browser.press(Qt::Key_Right, Qt::NoModifier, false);
        QCOMPARE(names(browser.selected()), strings({"last.png"}));
        browser.press(Qt::Key_Left, Qt::NoModifier, false);
        QCOMPARE(names(browser.selected()), strings({"4.png"}));
    }

    void whatPlaysKeepsTheOrderOfItsStart() {
        Window window;
        window.file("p/a.png", 10);
        window.file("p/b.png", 20);
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 2);
        browser.play(browser.assets().last());
        window.file("p/c.png", 5);
        QTRY_COMPARE(browser.order().size(), 3);
        QCOMPARE(names(window.library->playing()->order), (strings({"a.png", "b.png"})));
    }

    void keysWithNothingSelectedPassOn() {
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 1);
        QVERIFY(!browser.press(Qt::Key_Space, Qt::NoModifier, false));
        QVERIFY(!browser.press(Qt::Key_Return, Qt::NoModifier, false));
        QVERIFY(browser.press(Qt::Key_A, Qt::ControlModifier, false));
        QCOMPARE(browser.selected().size(), 1);
        QVERIFY(browser.press(Qt::Key_Space, Qt::NoModifier, false));
        QVERIFY(window.library->playing());
        QCOMPARE(window.library->playing()->order, browser.assets());
        QVERIFY(browser.press(Qt::Key_Escape, Qt::NoModifier, false));
        QVERIFY(browser.selection().isEmpty());
        QVERIFY(!browser.press(Qt::Key_Escape, Qt::NoModifier, true));
    }

    void keysSelectNothingOnAPageWithoutTiles() {
        Window window;
        window.file("p/a.png");
        window.open();
        Browser& browser = *window.browser;
        QTRY_COMPARE(totalOf(browser), 1);
        window.library->setPlace(Place::tidy());
        QTRY_VERIFY(browser.loaded());
        QVERIFY(!browser.order().isEmpty());
        QVERIFY(!browser.press(Qt::Key_A, Qt::ControlModifier, false));
        QVERIFY(!browser.press(Qt::Key_Right, Qt::NoModifier, false));
        QVERIFY(!browser.press(Qt::Key_Delete, Qt::NoModifier, false));
        QVERIFY(browser.selection().isEmpty());
    }

    void allOfAPageIsSelectedAndStaysSoWhileFilesComeAndGo() {
        Window window;
        const Location a = window.file("p/a.png", 10);
        window.file("p/b.png", 20);
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 2);
        QTRY_VERIFY(!window.library->indexing());
        browser.selectAll();
        QCOMPARE(names(browser.selected()), strings({"a.png", "b.png"}));
        QCOMPARE(browser.status(), QStringLiteral("2 selected · 2 bytes"));
        window.file("p/c.png");
        QTRY_COMPARE(browser.assets().size(), 3);
        QCOMPARE(names(browser.selected()), strings({"a.png", "b.png"}));
        browser.click(cellOf(a), Qt::ControlModifier);
        QCOMPARE(names(browser.selected()), strings({"b.png"}));
        QCOMPARE(browser.status(), QStringLiteral("1 selected · 1 byte"));
        browser.selectAll();
        QCOMPARE(browser.selected().size(), 3);
        QVERIFY(QFile::remove(a.toString()));
        QTRY_COMPARE(names(browser.selected()), strings({"b.png", "c.png"}));
        browser.press(Qt::Key_Escape, Qt::NoModifier, false);
        QVERIFY(browser.selected().isEmpty());
    }

    void aFileThatStandsTwiceInTheFeedIsSelectedOnce() {
        Window window;
        const Location starred = window.file("p/starred.png", 10);
        window.file("p/other.png", 20);
        star(starred, 1000);
        window.open();
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.shelf().size(), 1);
        QTRY_COMPARE(totalOf(browser), 2);
        browser.selectAll();
        QCOMPARE(names(browser.selected()), strings({"other.png", "starred.png"}));
        QCOMPARE(browser.status(), QStringLiteral("2 selected · 2 bytes"));
    }

    void goToFolderSelectsAFileThatAFilterHid() {
        Window window;
        const Location deep = window.file("p/sub/deep.png");
        window.open(Place::starred());
        Browser& browser = *window.browser;
        QTRY_VERIFY(browser.loaded());
        browser.settings()->setRecursive(true);
        browser.settings()->setKindRaw(QStringLiteral("video"));
        window.library->setPendingReveal(deep);
        window.library->setPlace(Place::folder(deep.parent()));
        QTRY_COMPARE(names(browser.selected()), strings({"deep.png"}));
        QVERIFY(!window.library->pendingReveal());
    }

    void theSelectionKeepsUpWithWhatPlays() {
        Window window;
        const Location a = window.file("p/a.png", 10);
        const Location b = window.file("p/b.png", 20);
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_COMPARE(browser.assets().size(), 2);
        QTRY_VERIFY(browser.gridFocused());
        browser.play(browser.assets().first());
        QCOMPARE(browser.selection(), PathSet{a});
        browser.setGridFocused(false);
        window.library->setPlaying(PlayRequest{browser.assets().last(), browser.assets()});
        QCOMPARE(browser.selection(), PathSet{b});
        window.library->setPlaying({});
        QVERIFY(browser.gridFocused());
    }

    void aClickOnTheBackgroundKeepsTheAnchor() {
        Window window;
        const Location file = window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_COMPARE(window.browser->assets().size(), 1);
        window.browser->click(cellOf(file), Qt::NoModifier);
        window.browser->clickBackground();
        QVERIFY(window.browser->selection().isEmpty());
        QCOMPARE(window.browser->anchor(), std::optional(file));
    }
};

QTEST_GUILESS_MAIN(TestBrowserInteraction)
#include "tst_browserinteraction.moc"
