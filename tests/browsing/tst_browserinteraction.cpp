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
