// The pane for who uses it by keyboard alone: the order in which the Tab key goes through it, and what keys do where.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Accessed.h"
#include "Pane.h"
#include "support/Strings.h"

#include <QtTest>

using namespace lumbra;

class TestBrowserKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    void tabGoesInReadingOrder() {
        Pane pane;
        pane.file("p/a/1.txt");
        pane.file("p/a/sub/2.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        QTRY_VERIFY(pane.browser->gridFocused());
        pane.items("StepButton").first()->forceActiveFocus(Qt::TabFocusReason);
        QStringList order;
        QPointF before(-1, -1);
        for (int i = 0; i < 16; ++i) {
            const QQuickItem* const item = pane.view->activeFocusItem();
            order << name(item);
            // A control with the keyboard has a ring around it, or is a field with a border.
            if (item->property("visualFocus").isValid())
                QVERIFY2(item->property("visualFocus").toBool(), qPrintable(name(item)));
            pane.press(Qt::Key_Tab);
        }
        QCOMPARE(order.first(14), strings({"p", "a", "New Folder", "Filter by name", "Details", "All", "Images",
                                           "Videos", "Audio", "Documents", "Sort", "Subfolders", "p", "sub"}));
        QCOMPARE(order.at(14), u"Thumbnail size"_qs);
        QCOMPARE(order.at(15), u"p"_qs);
    }

    void theStepsOfThePathAreUsedByKeys() {
        Pane pane;
        pane.file("p/a/1.txt");
        pane.file("p/b/1.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        QTRY_COMPARE(pane.browser->path()->siblings().size(), 2);
        pane.items("StepButton").last()->forceActiveFocus(Qt::TabFocusReason);
        pane.press(Qt::Key_Return);
        QTRY_VERIFY(pane.control("MenuItem", u"b"_qs));
        pane.press(Qt::Key_Escape);
        QTRY_VERIFY(!pane.control("MenuItem", u"b"_qs));
        access(pane.items("StepButton").first())
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p")));
        pane.library->setPlace(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        pane.items("StepButton").first()->forceActiveFocus(Qt::TabFocusReason);
        pane.press(Qt::Key_Enter);
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p")));
    }

    void thePageShowsThatItHasTheKeysUntilATileIsSelected() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QTRY_VERIFY(pane.browser->gridFocused());
        QVERIFY(pane.items("FocusRing").isEmpty()); // the keys are here from the start, and nothing was pressed
        pane.control("CheckBox", u"Subfolders"_qs)->forceActiveFocus(Qt::TabFocusReason);
        pane.press(Qt::Key_Tab);
        QTRY_COMPARE(pane.items("FocusRing").size(), 1);
        QVERIFY(pane.browser->gridFocused());
        pane.press(Qt::Key_Right);
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        QTRY_VERIFY(pane.items("FocusRing").isEmpty());
    }

    void tabLeadsToNoTileOfThePageBefore() {
        Pane pane;
        for (int n = 10; n < 50; ++n)
            pane.file("p/folder " + std::to_string(n) + "/1.txt");
        pane.file("q/x/1.txt");
        pane.file("q/y/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.items("FolderTile").size() > 10);
        QTRY_VERIFY(pane.browser->gridFocused());
        pane.library->setPlace(Place::folder(pane.folder("q")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 2);
        pane.settle();
        for (const QString& expected : {u"x"_qs, u"y"_qs, u"Thumbnail size"_qs}) {
            pane.press(Qt::Key_Tab);
            QCOMPARE(name(pane.view->activeFocusItem()), expected);
        }
        // Nor does a screen reader find one.
        QAccessibleInterface* list = access(pane.items("FolderTile").first())->parent();
        while (list->role() != QAccessible::List)
            list = list->parent();
        std::function<int(QAccessibleInterface*)> shown = [&](QAccessibleInterface* below) {
            int count = below->text(QAccessible::Name).startsWith(u"folder ") && !below->state().invisible ? 1 : 0;
            for (int i = 0; i < below->childCount(); ++i)
                count += shown(below->child(i));
            return count;
        };
        QCOMPARE(shown(list), 0);
    }

    void tabShowsTheFolderThatItLeadsTo() {
        Pane pane;
        for (int n = 10; n < 60; ++n)
            pane.file("p/folder " + std::to_string(n) + "/1.txt");
        pane.open(Place::folder(pane.folder("p")), 420);
        QTRY_VERIFY(pane.items("FolderTile").size() > 2);
        QTRY_VERIFY(pane.browser->gridFocused());
        const QQuickItem* const body = pane.items("PageGrid").first();
        for (int i = 0; i < 12; ++i) {
            pane.press(Qt::Key_Tab);
            const QQuickItem* const item = pane.view->activeFocusItem();
            if (QByteArray(item->metaObject()->className()).startsWith("FolderTile")) {
                const double top = item->mapToItem(body, QPointF()).y();
                QVERIFY2(top >= 0 && top + item->height() <= body->height(), qPrintable(name(item)));
            }
        }
        QVERIFY(name(pane.view->activeFocusItem()).startsWith(u"folder 2"));
    }

    void aGroupIsWalkedByArrowKeys() {
        Pane pane;
        for (const char* project : {"one", "two", "three"})
            pane.file(std::string(project) + "/1.txt");
        pane.open(Place::recent());
        const ProjectGroup group = pane.library->newGroup(u"All"_qs, strings({"one", "two", "three"}));
        pane.library->setPlace(Place::group(group.id));
        QTRY_COMPARE(pane.items("ProjectCard").size(), 3);
        const QQuickItem* const card = pane.items("ProjectCard").first();
        QCOMPARE(role(card), QAccessible::Button);
        QCOMPARE(name(card), u"one"_qs);
        QTRY_COMPARE(description(card), u"1 items"_qs);
        pane.control("IconButton", u"Details"_qs)->forceActiveFocus(Qt::TabFocusReason);
        pane.press(Qt::Key_Tab);
        QTRY_COMPARE(pane.items("FocusRing").size(), 1);
        QCOMPARE(name(pane.view->activeFocusItem()), u"one"_qs);
        pane.press(Qt::Key_Right);
        QCOMPARE(name(pane.view->activeFocusItem()), u"two"_qs);
        pane.press(Qt::Key_Return);
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("two")));
    }

    void theMenuKeyIsForTheFolderThatHasTheKeyboard() {
        Pane pane;
        pane.file("p/1.txt");
        pane.file("p/sub/2.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        QTRY_VERIFY(pane.browser->gridFocused());
        pane.press(Qt::Key_Right);
        pane.press(Qt::Key_Tab);
        QVERIFY(pane.items("FolderTile").first()->hasActiveFocus());
        pane.press(Qt::Key_Menu);
        QTRY_VERIFY(pane.control("MenuItem", u"Pin to Top"_qs));
        QVERIFY(!pane.control("MenuItem", u"Play"_qs));
        pane.press(Qt::Key_Escape);
        QTRY_VERIFY(!pane.control("MenuItem", u"Pin to Top"_qs));
        QTRY_VERIFY(pane.items("FolderTile").first()->hasActiveFocus());
    }

    void theMenuOfATileMovesItsFileByKeys() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.file("p/shots/2.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        pane.press(Qt::Key_Right);
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        pane.press(Qt::Key_Menu);
        QTRY_VERIFY(pane.control("MenuItem", u"Move To"_qs));
        QCOMPARE(role(pane.control("MenuItem", u"Move To"_qs)), QAccessible::MenuItem);
        // "Move To" is the eighth entry, behind a divider.
        for (int i = 0; i < 20 && !pane.control("MenuItem", u"Move To"_qs)->property("highlighted").toBool(); ++i)
            pane.press(Qt::Key_Down);
        QVERIFY(pane.control("MenuItem", u"Move To"_qs)->property("highlighted").toBool());
        pane.press(Qt::Key_Right);
        QTRY_VERIFY(pane.control("MenuItem", u"   shots"_qs));
        for (int i = 0; i < 10 && !pane.control("MenuItem", u"   shots"_qs)->property("highlighted").toBool(); ++i)
            pane.press(Qt::Key_Down);
        pane.press(Qt::Key_Return);
        QTRY_VERIFY(pane.folder("p/shots/1.txt").exists() && !file.exists());
    }
};

QTEST_MAIN(TestBrowserKeys)
#include "tst_browserkeys.moc"
