// The pane for who uses it by keyboard alone, or by a screen reader: what each control is, is called and says, read
// through the accessibility interface, and the order in which the Tab key goes through them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pane.h"
#include "support/Strings.h"

#include <QAccessible>
#include <QtTest>

using namespace lumbra;

namespace {

QAccessibleInterface* access(const QQuickItem* item) {
    return QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(item));
}

QString name(const QQuickItem* item) {
    auto* const interface = access(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

QString description(const QQuickItem* item) {
    return access(item)->text(QAccessible::Description);
}

QAccessible::Role role(const QQuickItem* item) {
    auto* const interface = access(item);
    return interface ? interface->role() : QAccessible::NoRole;
}

QAccessible::State state(const QQuickItem* item) {
    return access(item)->state();
}

// Qt 6.4 tells of every button with a menu as a plain one.
bool isButtonWithMenu(const QQuickItem* item) {
    return role(item) == QAccessible::ButtonMenu || role(item) == QAccessible::Button;
}

void press(const QQuickItem* item) {
    auto* const actions = access(item)->actionInterface();
    QVERIFY(actions);
    actions->doAction(QAccessibleActionInterface::pressAction());
}

} // namespace

class TestBrowserAccess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    void theToolbarOfAFolder() {
        Pane pane;
        pane.inspecting = true;
        pane.file("p/a/1.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        const QList<QQuickItem*> steps = pane.items("StepButton");
        QCOMPARE(role(steps[0]), QAccessible::Button);
        QCOMPARE(name(steps[0]), u"p"_qs);
        QVERIFY(isButtonWithMenu(steps[1]));
        QCOMPARE(name(steps[1]), u"a"_qs);
        const QQuickItem* const newFolder = pane.control("IconButton", u"New Folder"_qs);
        QCOMPARE(role(newFolder), QAccessible::Button);
        QCOMPARE(name(newFolder), u"New Folder"_qs);
        QCOMPARE(description(newFolder), u"New folder here (⇧⌘N)"_qs);
        const QQuickItem* const search = pane.items("SearchField").first();
        QCOMPARE(role(search), QAccessible::EditableText);
        QCOMPARE(name(search), u"Filter by name"_qs);
        const QQuickItem* const details = pane.control("IconButton", u"Details"_qs);
        QCOMPARE(role(details), QAccessible::Button);
        QVERIFY(state(details).checkable && state(details).checked);
        QCOMPARE(description(details), u"Hide details"_qs);
        press(details);
        QVERIFY(!state(details).checked);
        QCOMPARE(description(details), u"Show details"_qs);
        press(newFolder);
        QVERIFY(pane.prompt);
        QCOMPARE(pane.prompt->title, u"New Folder"_qs);
    }

    void theHeader() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::recent());
        QTRY_VERIFY(pane.control("Chip", u"Documents"_qs));
        QTRY_COMPARE(description(pane.control("Chip", u"Documents"_qs)), u"1"_qs);
        const QQuickItem* const week = pane.control("Chip", u"7 days"_qs);
        QCOMPARE(role(week), QAccessible::RadioButton);
        QVERIFY(state(week).checkable && state(week).checked);
        QVERIFY(!state(pane.control("Chip", u"3 days"_qs)).checked);
        press(pane.control("Chip", u"3 days"_qs));
        QVERIFY(state(pane.control("Chip", u"3 days"_qs)).checked);
        press(pane.control("Chip", u"Documents"_qs));
        QVERIFY(state(pane.control("Chip", u"Documents"_qs)).checked);
        QVERIFY(!state(pane.control("Chip", u"All"_qs)).checked);
        const QQuickItem* const sort = pane.control("SortMenu", u"Sort"_qs);
        QVERIFY(isButtonWithMenu(sort));
        QCOMPARE(name(sort), u"Sort"_qs);
        pane.library->setPlace(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("CheckBox", u"Subfolders"_qs));
        const QQuickItem* const subfolders = pane.control("CheckBox", u"Subfolders"_qs);
        QCOMPARE(role(subfolders), QAccessible::CheckBox);
        QCOMPARE(description(subfolders), u"Show media from every folder inside this one"_qs);
        QVERIFY(!state(subfolders).checked);
        press(subfolders);
        QVERIFY(state(subfolders).checked);
        QVERIFY(pane.browser->settings()->recursive());
    }

    void whereThereIsNoRoomMenusStandForChips() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::recent(), 340);
        const auto menu = [&](const QString& label) -> QQuickItem* {
            for (const char* type : {"ChoiceButton", "SortMenu"})
                for (QQuickItem* item : pane.items(type))
                    if (name(item) == label)
                        return item;
            return nullptr;
        };
        QTRY_VERIFY(menu(u"Sort"_qs) && menu(u"Kind"_qs) && menu(u"7 days"_qs));
        for (const QString& label : {u"Sort"_qs, u"Kind"_qs, u"7 days"_qs})
            QVERIFY(isButtonWithMenu(menu(label)));
        // All of the header is in view.
        const QQuickItem* const last = menu(u"Sort"_qs);
        QTRY_VERIFY(last->mapToScene({last->width(), 0}).x() <= 340 - 16);
        pane.click(menu(u"7 days"_qs));
        QTRY_VERIFY(pane.control("MenuItem", u"30 days"_qs));
        pane.click(pane.control("MenuItem", u"30 days"_qs));
        QCOMPARE(pane.browser->settings()->recentDays(), 30);
    }

    void aPathNeverHidesTheToolbarsButtons() {
        Pane pane;
        const std::string deep = "p/a folder with a rather long name/and another one in it/and the last";
        pane.file(deep + "/1.txt");
        pane.open(Place::folder(pane.folder(deep)), 420);
        QTRY_COMPARE(pane.items("StepButton").size(), 4);
        pane.settle();
        const QQuickItem* const last = pane.items("StepButton").last();
        const QQuickItem* const first = pane.control("IconButton", u"New Folder"_qs);
        QVERIFY(last->mapToScene({last->width(), 0}).x() <= first->mapToScene({}).x());
    }

    void tiles() {
        Pane pane;
        const Location file = pane.file("p/1.txt", 10);
        pane.file("p/sub/2.txt");
        pane.file("p/sub/3.txt");
        pane.file("p/empty folder/.keep");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 2);
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        const QQuickItem* const tile = pane.items("AssetTile").first();
        QCOMPARE(role(tile), QAccessible::ListItem);
        QCOMPARE(name(tile), u"1.txt"_qs);
        QCOMPARE(description(tile), u"Document"_qs);
        QVERIFY(state(tile).selectable && !state(tile).selected);
        press(tile);
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        QVERIFY(state(tile).selected);
        pane.library->toggleStar({file});
        QTRY_COMPARE(description(pane.items("AssetTile").first()), u"Document, Starred"_qs);
        const QQuickItem* const folder = pane.tile("FolderTile", u"sub"_qs);
        QCOMPARE(role(folder), QAccessible::Button);
        QCOMPARE(name(folder), u"sub"_qs);
        QTRY_COMPARE(description(folder), u"2 files"_qs);
        QCOMPARE(description(pane.tile("FolderTile", u"empty folder"_qs)), u"Empty"_qs);
        // The tiles are the page's list.
        QAccessibleInterface* parent = access(tile)->parent();
        while (parent && parent->role() != QAccessible::List)
            parent = parent->parent();
        QVERIFY(parent);
        QCOMPARE(parent->text(QAccessible::Name), u"p"_qs);
        press(folder);
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
    }

    void theFeed() {
        Pane pane;
        for (int n = 1; n <= 6; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", n);
        pane.open(Place::recent());
        QTRY_COMPARE(pane.items("StackTile").size(), 1);
        const QQuickItem* const head = pane.items("SectionHead").first();
        QCOMPARE(role(head), QAccessible::Heading);
        QCOMPARE(name(head), u"Documents, 6 new"_qs);
        const QQuickItem* const stack = pane.items("StackTile").first();
        QCOMPARE(role(stack), QAccessible::Button);
        QCOMPARE(name(stack), u"Open p"_qs);
        QCOMPARE(description(stack), u"2 more in this folder"_qs);
        QCOMPARE(description(pane.items("AssetTile").first()), u"Document, p"_qs);
    }

    void theStatusLine() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        const QQuickItem* const slider = pane.control("Slider", u"Thumbnail size"_qs);
        QCOMPARE(role(slider), QAccessible::Slider);
        QCOMPARE(name(slider), u"Thumbnail size"_qs);
        auto* const value = access(slider)->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->currentValue().toDouble(), 170.0);
        QCOMPARE(value->minimumValue().toDouble(), 100.0);
        QCOMPARE(value->maximumValue().toDouble(), 360.0);
        value->setCurrentValue(200.0);
        QTRY_COMPARE(pane.browser->settings()->zoom(), 200.0);
        const_cast<QQuickItem*>(slider)->forceActiveFocus(Qt::TabFocusReason);
        pane.press(Qt::Key_Right);
        QCOMPARE(pane.browser->settings()->zoom(), 210.0);
        QVERIFY(pane.control("Label", u"1 item · 1 byte"_qs));
        QCOMPARE(role(pane.control("Label", u"1 item · 1 byte"_qs)), QAccessible::StaticText);
    }

    void theEmptyPage() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        pane.browser->setSearch(u"zz"_qs);
        QTRY_VERIFY(pane.control("Button", u"Show Everything"_qs));
        QVERIFY(pane.control("Label", u"Nothing matches “zz”."_qs));
        press(pane.control("Button", u"Show Everything"_qs));
        QVERIFY(pane.browser->search().isEmpty());
    }

    void theDetails() {
        Pane pane;
        pane.inspecting = true;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        const QQuickItem* const details = pane.items("InspectorPane").first();
        QCOMPARE(role(details), QAccessible::Pane);
        QCOMPARE(name(details), u"Details"_qs);
        QTRY_COMPARE(details->mapToScene({}).x(), 1000 - details->width());
        QVERIFY(pane.control("Label", u"Nothing selected"_qs));
        pane.click(pane.tile("AssetTile", u"2.txt"_qs));
        const auto told = [&] {
            const QQuickItem* const label = pane.view->findChild<QQuickItem*>(u"inspectedName"_qs);
            return label ? label->property("text").toString() : QString();
        };
        QTRY_COMPARE(told(), u"2.txt"_qs);
        pane.press(Qt::Key_A, Qt::ControlModifier);
        QTRY_COMPARE(told(), u"2 items"_qs);
        const double page = pane.items("PageGrid").first()->width();
        pane.click(pane.control("IconButton", u"Details"_qs));
        QTRY_VERIFY(pane.items("InspectorPane").isEmpty());
        QCOMPARE(pane.items("PageGrid").first()->width(), page + details->width());
        QCOMPARE(pane.selected().size(), 2);
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

QTEST_MAIN(TestBrowserAccess)
#include "tst_browseraccess.moc"
