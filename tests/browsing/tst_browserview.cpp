// The pane on screen: real clicks and keys on real tiles over a real library.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pane.h"
#include "core/Stars.h"
#include "support/Strings.h"

#include <QClipboard>
#include <QtTest>

using namespace lumbra;

class TestBrowserView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void clicksSelectAndKeysStep() {
        Pane pane;
        for (int n = 1; n <= 4; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 * n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 4);
        pane.click(pane.tile("AssetTile", u"2.txt"_qs));
        QCOMPARE(pane.selected(), strings({"2.txt"}));
        pane.click(pane.tile("AssetTile", u"4.txt"_qs), Qt::ShiftModifier);
        QCOMPARE(pane.selected(), strings({"2.txt", "3.txt", "4.txt"}));
        pane.click(pane.tile("AssetTile", u"3.txt"_qs), Qt::ControlModifier);
        QCOMPARE(pane.selected(), strings({"2.txt", "4.txt"}));
        QTest::keyClick(pane.view.get(), Qt::Key_Left);
        QCOMPARE(pane.selected(), strings({"2.txt"}));
        QTest::keyClick(pane.view.get(), Qt::Key_Escape);
        QVERIFY(pane.selected().isEmpty());
        QTest::keyClick(pane.view.get(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(pane.selected().size(), 4);
        QTest::mouseClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier, {500, 500});
        QVERIFY(pane.selected().isEmpty());
    }

    void aDoubleClickPlays() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QTest::mouseDClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier,
                           Pane::centre(pane.items("AssetTile").first()));
        QTRY_VERIFY(pane.library->playing());
        QCOMPARE(pane.library->playing()->asset.url, file);
    }

    void aFolderAndAStackLeadToTheirFolder() {
        Pane pane;
        for (int n = 1; n <= 6; ++n)
            pane.file("p/sub/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        pane.click(pane.items("FolderTile").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
        pane.library->setPlace(Place::recent());
        QTRY_COMPARE(pane.items("StackTile").size(), 1);
        QCOMPARE(pane.items("StackTile").first()->property("help").toString(), QStringLiteral("Open p › sub"));
        pane.click(pane.items("StackTile").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
    }

    void aReloadKeepsEveryTile() {
        Pane pane;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        const QList<QQuickItem*> before = pane.items("AssetTile");
        pane.file("p/3.txt", 30);
        QTRY_COMPARE(pane.items("AssetTile").size(), 3);
        QCOMPARE(pane.items("AssetTile").first(2), before);
        // A new width moves the third tile and makes none of the two that stay in their columns anew.
        pane.view->resize(420, 700);
        QTRY_COMPARE(pane.browser->rows()->columns(), 2);
        QCOMPARE(pane.items("AssetTile").first(2), before);
    }

    void typingFiltersAndEscapeShowsAllAgain() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.file("p/dog.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        pane.click(pane.items("SearchField").first());
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_O, Qt::Key_G})
            QTest::keyClick(pane.view.get(), key);
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QVERIFY(pane.tile("AssetTile", u"dog.txt"_qs));
        QVERIFY(!pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Escape);
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
    }

    void whatAFilterHidesIsShownAgainByTheButton() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("Chip", u"Videos"_qs));
        pane.click(pane.control("Chip", u"Videos"_qs));
        QTRY_VERIFY(pane.control("Button", u"Show Everything"_qs));
        QVERIFY(pane.items("AssetTile").isEmpty());
        pane.click(pane.control("Button", u"Show Everything"_qs));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QVERIFY(pane.control("Chip", u"All"_qs)->property("on").toBool());
    }

    void theKindsTakeTheWidestFormThatFits() {
        Pane pane;
        for (const char* name : {"a.png", "b.mp4", "c.mp3", "d.txt"})
            pane.file(std::string("p/") + name);
        pane.open(Place::folder(pane.folder("p")));
        const auto form = [&] {
            const QQuickItem* const chip = pane.control("Chip", u"Documents"_qs);
            return !chip ? u"menu"_qs : chip->property("count").toString().isEmpty() ? u"chips"_qs : u"counts"_qs;
        };
        QTRY_COMPARE(form(), u"counts"_qs);
        QStringList forms;
        for (int width = 1000; width >= 300; width -= 10) {
            pane.view->resize(width, 700);
            QTRY_COMPARE(pane.items("BrowserView").first()->width(), width);
            const QQuickItem* const kinds = pane.items("KindChips").first();
            // Chips stand where they belong, and their row has its width, once they have been drawn.
            QTRY_VERIFY(form() == u"menu"_qs || kinds->width() <= kinds->property("available").toReal());
            if (forms.isEmpty() || forms.last() != form())
                forms << form();
        }
        QCOMPARE(forms, strings({"counts", "chips", "menu"}));
        QQuickItem* const menu = pane.control("ChoiceButton", u"Kind"_qs);
        QVERIFY(menu);
        // Nobody has to open it to see that files are hidden.
        const QVariant plain = menu->property("kind");
        pane.browser->settings()->setKindRaw(u"video"_qs);
        QTRY_VERIFY(menu->property("kind") != plain);
        pane.browser->settings()->setKindRaw(u"all"_qs);
        QTRY_COMPARE(menu->property("kind"), plain);
    }

    void aKindWithoutFilesIsDim() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("Chip", u"Images"_qs));
        QTRY_VERIFY(!pane.control("Chip", u"Documents"_qs)->property("dim").toBool());
        QVERIFY(pane.control("Chip", u"Images"_qs)->property("dim").toBool());
    }

    void theFeedHasItsHeadsAndRevealsMore() {
        Pane pane;
        for (int folder = 0; folder < 7; ++folder)
            for (int n = 0; n < 4; ++n)
                pane.file("p/" + std::to_string(folder) + "/" + std::to_string(n) + ".txt");
        pane.open(Place::recent());
        QTRY_VERIFY(pane.control("Label", u"28 new"_qs));
        PageRows& rows = *pane.browser->rows();
        const int last = rows.rowCount() - 1;
        Q_EMIT pane.browser->scrollRequested(last, false);
        QTRY_VERIFY(pane.control("Button", u"Show More Documents"_qs));
        QTRY_VERIFY(pane.items("QQuickListView").last()->property("atYEnd").toBool());
        pane.click(pane.control("Button", u"Show More Documents"_qs));
        QTRY_VERIFY(!pane.control("Button", u"Show More Documents"_qs));
        QCOMPARE(pane.browser->order().size(), 28);
    }

    void steppingKeepsTheSelectedTileInView() {
        Pane pane;
        for (int n = 1; n <= 60; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.browser->order().size(), 60);
        for (int n = 0; n < 45; ++n)
            QTest::keyClick(pane.view.get(), Qt::Key_Down);
        QCOMPARE(pane.selected(), strings({"45.txt"}));
        QTRY_VERIFY(pane.tile("AssetTile", u"45.txt"_qs));
        QTRY_VERIFY(Pane::centre(pane.tile("AssetTile", u"45.txt"_qs)).y() < 668);
    }

    void aPageThatFitsIsNotScrolledOnceItsWindowHasGrown() {
        Pane pane;
        for (int n = 1; n <= 12; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.browser->order().size(), 12);
        QQuickItem* const list = pane.items("QQuickListView").last();
        const int last = pane.browser->rows()->rowCount() - 1;
        QVERIFY(last > 0);
        pane.view->resize(1000, 200);
        QTRY_VERIFY(list->height() < 150);
        Q_EMIT pane.browser->scrollRequested(last, true);
        pane.view->resize(1000, 900);
        QTRY_VERIFY(list->height() > 600);
        pane.settle();
        QTRY_VERIFY(list->property("atYBeginning").toBool());
        QVERIFY(pane.tile("AssetTile", u"1.txt"_qs));
    }

    void noHeadCoversTheTilesOfAScrolledFolder() {
        Pane pane;
        for (int n = 1; n <= 60; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.browser->order().size(), 60);
        Q_EMIT pane.browser->scrollRequested(6, true);
        QTRY_VERIFY(pane.tile("AssetTile", u"50.txt"_qs));
        pane.settle();
        for (const QQuickItem* head : pane.items("SectionHead"))
            QCOMPARE(head->height(), 0.0);
    }

    void aCardOpensItsProject() {
        Pane pane;
        pane.file("one/1.txt");
        pane.file("two/1.txt");
        pane.open(Place::recent());
        const ProjectGroup group = pane.library->newGroup(u"Both"_qs, strings({"one", "two"}));
        pane.library->setPlace(Place::group(group.id));
        QTRY_COMPARE(pane.items("ProjectCard").size(), 2);
        QVERIFY(pane.items("Header").isEmpty());
        QVERIFY(pane.control("Label", u"2 projects"_qs));
        pane.click(pane.items("ProjectCard").last());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("two")));
    }

    void cardsStandInAsManyColumnsAsFit_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("columns");
        QTest::newRow("one of 300") << 332 << 1;
        QTest::newRow("not yet two") << 649 << 1;
        QTest::newRow("two of 300") << 650 << 2;
        QTest::newRow("two") << 844 << 2;
        QTest::newRow("three") << 1000 << 3;
    }
    void cardsStandInAsManyColumnsAsFit() {
        QFETCH(int, width);
        Pane pane;
        for (const char* project : {"one", "two", "three"})
            pane.file(std::string(project) + "/1.txt");
        pane.open(Place::recent(), width);
        pane.library->setPlace(Place::group(pane.library->newGroup(u"All"_qs, strings({"one", "two", "three"})).id));
        QTRY_COMPARE(pane.items("ProjectCard").size(), 3);
        pane.settle();
        const QList<QQuickItem*> cards = pane.items("ProjectCard");
        int columns = 0;
        for (const QQuickItem* card : cards) {
            QVERIFY(card->width() >= 300 && card->width() <= 420);
            if (card->mapToScene({}).y() == cards.first()->mapToScene({}).y())
                ++columns;
        }
        QTEST(columns, "columns");
        if (columns > 1)
            QCOMPARE(cards[1]->mapToScene({}).x() - cards[0]->mapToScene({}).x(), cards[0]->width() + 18);
        // In the middle of the page.
        const double left = cards.first()->mapToScene({}).x();
        const QQuickItem* const last = cards[columns - 1];
        QVERIFY(std::abs(left - (width - last->mapToScene({last->width(), 0}).x())) <= 2);
    }

    void aStepOfThePathLeadsThereAndTheLastOneToItsSiblings() {
        Pane pane;
        pane.file("p/a/1.txt");
        pane.file("p/b/1.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        QTRY_COMPARE(pane.browser->path()->siblings().size(), 2);
        pane.click(pane.items("StepButton").last());
        QTRY_VERIFY(pane.control("MenuItem", u"b"_qs));
        pane.click(pane.control("MenuItem", u"b"_qs));
        QTRY_COMPARE(pane.library->place(), Place::folder(pane.folder("p/b")));
        QTRY_VERIFY(!pane.control("MenuItem", u"a"_qs));
        pane.click(pane.items("StepButton").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p")));
    }

    void aRightClickActsOnItsTileAndTheMenuKeyOnTheSelectedOne() {
        Pane pane;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        pane.click(pane.tile("AssetTile", u"1.txt"_qs));
        QTest::mouseClick(pane.view.get(), Qt::RightButton, Qt::NoModifier,
                          Pane::centre(pane.tile("AssetTile", u"2.txt"_qs)));
        QTRY_VERIFY(pane.control("MenuItem", u"Copy Path"_qs));
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        pane.click(pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), pane.folder("p/2.txt").toString());
        QTRY_VERIFY(!pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_VERIFY(pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Menu);
        QTRY_VERIFY(pane.control("MenuItem", u"Copy Path"_qs));
        pane.click(pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), pane.folder("p/1.txt").toString());
    }

    void theStarOfATileIsForAllThatIsSelectedWithIt() {
        Pane pane;
        for (int n = 1; n <= 3; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 * n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 3);
        pane.click(pane.tile("AssetTile", u"1.txt"_qs));
        pane.click(pane.tile("AssetTile", u"2.txt"_qs), Qt::ControlModifier);
        const auto clickStar = [&](const QString& name) {
            QTest::mouseMove(pane.view.get(), Pane::centre(pane.tile("AssetTile", name)));
            QTRY_VERIFY(pane.tile("AssetTile", name)->property("hovering").toBool());
            const auto isOfTheTile = [&](const QQuickItem* star) {
                return star->isEnabled() && pane.tile("AssetTile", name)->isAncestorOf(star);
            };
            const QList<QQuickItem*> stars = pane.items("StarButton");
            const auto star = std::find_if(stars.begin(), stars.end(), isOfTheTile);
            QVERIFY(star != stars.end());
            pane.click(*star);
        };
        const auto starred = [&] {
            QStringList names;
            for (int n = 1; n <= 3; ++n)
                if (Stars::read(pane.folder("p/" + std::to_string(n) + ".txt")))
                    names << QString::number(n);
            return names;
        };
        clickStar(u"3.txt"_qs);
        QTRY_COMPARE(starred(), strings({"3"}));
        QCOMPARE(pane.selected(), strings({"1.txt", "2.txt"}));
        clickStar(u"2.txt"_qs);
        QTRY_COMPARE(starred(), strings({"1", "2", "3"}));
        QTest::keyClick(pane.view.get(), Qt::Key_S);
        QTRY_COMPARE(starred(), strings({"3"}));
    }

    void keysReachFoldersAndGoBackToTheSelection() {
        Pane pane;
        pane.file("p/1.txt");
        pane.file("p/sub/2.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        QTRY_VERIFY(pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Tab);
        QTRY_VERIFY(pane.items("FolderTile").first()->hasActiveFocus());
        QVERIFY(pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Right);
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        QVERIFY(!pane.items("FolderTile").first()->hasActiveFocus());
        QTest::keyClick(pane.view.get(), Qt::Key_Tab);
        QTest::keyClick(pane.view.get(), Qt::Key_Return);
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
        QVERIFY(!pane.library->playing());
    }
};

QTEST_MAIN(TestBrowserView)
#include "tst_browserview.moc"
