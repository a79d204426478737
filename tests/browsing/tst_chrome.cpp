// What stands around the tiles, as it is seen and used: chips, menus of choices, the path, cards of projects.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pane.h"
#include "support/Strings.h"

#include <QAccessible>
#include <QtTest>

#include <algorithm>

using namespace lumbra;

class TestChrome : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void theOrderIsChosenInAMenuThatMarksThePresentOne() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("SortMenu", u"Sort"_qs));
        QCOMPARE(entries(pane, "SortMenu", u"Sort"_qs),
                 strings({"*Newest first", "Oldest first", "Name", "Largest first"}));
        pane.click(pane.control("MenuItem", u"Name"_qs));
        QCOMPARE(pane.browser->settings()->sort(), SortOrder::name);
        QTRY_VERIFY(pane.items("MenuItem").isEmpty());
        QCOMPARE(entries(pane, "SortMenu", u"Sort"_qs),
                 strings({"Newest first", "Oldest first", "*Name", "Largest first"}));
        pane.click(pane.control("MenuItem", u"Name"_qs)); // once more changes nothing
        QCOMPARE(pane.browser->settings()->sort(), SortOrder::name);
        QTRY_VERIFY(pane.items("MenuItem").isEmpty());
        QCOMPARE(entries(pane, "SortMenu", u"Sort"_qs),
                 strings({"Newest first", "Oldest first", "*Name", "Largest first"}));
    }

    void theMenuOfKindsHoldsTheSameChoicesAsTheChips() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")), 340);
        QTRY_VERIFY(pane.control("ChoiceButton", u"Kind"_qs));
        QCOMPARE(entries(pane, "ChoiceButton", u"Kind"_qs),
                 strings({"*All", "Images", "Videos", "Audio", "Documents"}));
        pane.click(pane.control("MenuItem", u"Audio"_qs));
        QCOMPARE(pane.browser->settings()->kindRaw(), u"audio"_qs);
        QTRY_VERIFY(pane.items("MenuItem").isEmpty());
        QCOMPARE(entries(pane, "ChoiceButton", u"Kind"_qs),
                 strings({"All", "Images", "Videos", "*Audio", "Documents"}));
    }

    void aKindWithoutFilesCanBeChosenAndThePageSaysSo() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("Chip", u"Audio"_qs));
        pane.click(pane.control("Chip", u"Audio"_qs));
        QCOMPARE(pane.browser->settings()->kindRaw(), u"audio"_qs);
        QTRY_VERIFY(pane.control("Label", u"No audio here"_qs));
        pane.click(pane.control("Chip", u"Audio"_qs)); // does not turn it off
        QCOMPARE(pane.browser->settings()->kindRaw(), u"audio"_qs);
        QVERIFY(pane.control("Chip", u"Audio"_qs)->property("on").toBool());
        pane.click(pane.control("Chip", u"All"_qs));
        QCOMPARE(pane.browser->settings()->kindRaw(), u"all"_qs);
    }

    void aPeriodIsChosenAndOneWithoutAChipIsUsedAsItIs() {
        Pane pane;
        pane.file("p/1.txt", 10 * 24 * 3600);
        pane.open(Place::recent());
        const auto on = [&] {
            QStringList labels;
            for (const QQuickItem* chip : pane.items("Chip"))
                if (chip->property("on").toBool())
                    labels << chip->property("text").toString();
            return labels;
        };
        QTRY_COMPARE(on(), strings({"7 days", "All"}));
        QTRY_VERIFY(pane.control("Label", u"Nothing new"_qs));
        pane.click(pane.control("Chip", u"30 days"_qs));
        QTRY_COMPARE(on(), strings({"30 days", "All"}));
        pane.browser->settings()->setRecentDays(14);
        QTRY_COMPARE(on(), strings({"All"}));
        QTRY_VERIFY(pane.tile("AssetTile", u"1.txt"_qs));
    }

    void thePartsOfTheHeaderArePartsOfTheirPages_data() {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QStringList>("parts");
        QTest::newRow("recent") << u"recent"_qs << strings({"PeriodChips", "KindChips", "SortMenu"});
        QTest::newRow("starred") << u"starred"_qs << strings({"KindChips", "SortMenu"});
        QTest::newRow("folder") << u"folder"_qs << strings({"KindChips", "SortMenu", "CheckBox"});
        QTest::newRow("group") << u"group"_qs << QStringList();
        QTest::newRow("tidy") << u"tidy"_qs << QStringList();
    }
    void thePartsOfTheHeaderArePartsOfTheirPages() {
        QFETCH(QString, page);
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::recent());
        if (page == u"starred")
            pane.library->setPlace(Place::starred());
        else if (page == u"folder")
            pane.library->setPlace(Place::folder(pane.folder("p")));
        else if (page == u"group")
            pane.library->setPlace(Place::group(pane.library->newGroup(u"G"_qs, strings({"p"})).id));
        else if (page == u"tidy")
            pane.library->setPlace(Place::tidy());
        QTRY_COMPARE(pane.browser->page(), page);
        pane.settle();
        QList<QQuickItem*> found;
        for (const char* part : {"PeriodChips", "KindChips", "SortMenu", "CheckBox"})
            found += pane.items(part);
        std::ranges::sort(found, {}, [](const QQuickItem* item) { return item->mapToScene({}).x(); });
        QStringList parts;
        for (const QQuickItem* item : found)
            parts << QString::fromLatin1(item->metaObject()->className()).section(u"_QML"_qs, 0, 0);
        QTEST(parts, "parts");
    }

    void theFolderOnViewKeepsItsNameWhereThePathIsLong() {
        Pane pane;
        const std::string deep = "project/a folder with a rather long name/and one more of that kind/here";
        pane.file(deep + "/1.txt");
        pane.open(Place::folder(pane.folder(deep)), 560);
        QTRY_COMPARE(pane.items("StepButton").size(), 4);
        pane.settle();
        const QList<QQuickItem*> steps = pane.items("StepButton");
        QTRY_COMPARE(steps.last()->width(), steps.last()->implicitWidth());
        QVERIFY(steps[1]->width() < steps[1]->implicitWidth());
        // What follows a name that is cut stands as close to it as to any other.
        const auto behindName = [](QQuickItem* step) {
            const auto texts = step->findChildren<QQuickItem*>();
            const auto name = std::ranges::find_if(
                texts, [](const QQuickItem* item) { return item->isVisible() && item->inherits("QQuickText"); });
            const double end = (*name)->property("contentWidth").toDouble();
            return step->width() - (*name)->mapToItem(step, {end, 0}).x();
        };
        QTRY_VERIFY(behindName(steps[1]) <= 7); // as wide as the margin of a step
        const QQuickItem* const bar = pane.items("PathBarView").first();
        QVERIFY(steps.last()->mapToItem(bar, {steps.last()->width(), 0}).x() <= bar->width());
        // A long one takes what is left, too.
        pane.library->setPlace(Place::folder(pane.folder(deep).parent()));
        QTRY_COMPARE(pane.items("StepButton").size(), 3);
        pane.settle();
        const QQuickItem* const last = pane.items("StepButton").last();
        QTRY_VERIFY(last->width() >= bar->width() / 2 - 20);
        QVERIFY(last->mapToItem(bar, {last->width(), 0}).x() <= bar->width());
    }

    void aCardHasAsManyPicturesAsItsProjectHasFiles() {
        Pane pane;
        pane.file("two/1.png");
        pane.file("two/2.mp4");
        pane.open(Place::recent());
        pane.library->setPlace(Place::group(pane.library->newGroup(u"G"_qs, strings({"two"})).id));
        QTRY_COMPARE(pane.items("CardThumb").size(), 4);
        const auto filled = [&] {
            QList<bool> cells;
            for (const QQuickItem* cell : pane.items("CardThumb"))
                cells << !cell->property("asset").isNull();
            return cells;
        };
        QTRY_COMPARE(filled(), (QList<bool>{true, true, false, false}));
        QVERIFY(pane.control("Label", u"2 items"_qs));
    }

    void namesWrittenFromTheRightStandAtTheLeftLikeAllOthers() {
        Pane pane;
        pane.inspecting = true;
        pane.file("פרויקט/תמונה.txt");
        pane.open(Place::folder(pane.folder("פרויקט")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        pane.click(pane.items("AssetTile").first());
        const auto standAtTheLeft = [&](const QString& text) {
            int labels = 0;
            for (const QQuickItem* label : pane.items("Label")) {
                if (label->property("text").toString() != text)
                    continue;
                if (label->property("effectiveHorizontalAlignment").toInt() != Qt::AlignLeft)
                    return 0;
                ++labels;
            }
            return labels;
        };
        QTRY_COMPARE(standAtTheLeft(u"תמונה.txt"_qs), 2); // of the tile and of the details
        pane.library->setPlace(Place::group(pane.library->newGroup(u"קבוצה"_qs, {u"פרויקט"_qs}).id));
        QTRY_COMPARE(standAtTheLeft(u"פרויקט"_qs), 1);
        QCOMPARE(standAtTheLeft(u"קבוצה"_qs), 1);
    }

    void withReducedMotionTheDetailsAreThereAndGoneAtOnce() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        const auto shown = [&] {
            const QList<QQuickItem*> panes = pane.items("InspectorPane");
            return panes.isEmpty() ? 0.0 : panes.first()->property("shown").toReal();
        };
        const auto toggle = [&] {
            pane.browser->settings()->setShowInspector(!pane.browser->settings()->showInspector());
        };
        toggle();
        QVERIFY(shown() < 1); // it slides
        QTRY_COMPARE(shown(), 1.0);
        Look::setAppearance(pane.engine, false, true);
        toggle();
        QCOMPARE(shown(), 0.0);
        toggle();
        QCOMPARE(shown(), 1.0);
    }

private:
    // Opens the menu of choices; the present one bears a star.
    static QStringList entries(const Pane& pane, const char* type, const QString& text) {
        pane.click(pane.control(type, text));
        [&] { QTRY_VERIFY(pane.items("MenuItem").size() >= 4); }();
        QStringList texts;
        for (const QQuickItem* item : pane.items("MenuItem"))
            texts << (item->property("checked").toBool() ? u"*"_qs : QString()) + item->property("text").toString();
        return texts;
    }
};

QTEST_MAIN(TestChrome)
#include "tst_chrome.moc"
