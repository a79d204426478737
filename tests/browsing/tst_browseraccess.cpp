// The pane for who uses it by a screen reader: what each control is, is called and says, read through the accessibility
// interface.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Accessed.h"
#include "Pane.h"
#include "support/Strings.h"

#include <QtTest>

using namespace lumbra;

namespace {

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
        // The star that it wears is a mark, which has been told of, and no button.
        QCOMPARE(pane.items("StarButton").size(), 1);
        QCOMPARE(access(pane.items("AssetTile").first())->childCount(), 0);
        QTest::mouseMove(pane.view.get(), Pane::centre(pane.items("AssetTile").first()));
        QTRY_COMPARE(access(pane.items("AssetTile").first())->childCount(), 1);
        QTest::mouseMove(pane.view.get(), QPoint(1, 1));
        QTRY_COMPARE(access(pane.items("AssetTile").first())->childCount(), 0);
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
        QVERIFY(pane.control("BalancedLabel", u"Nothing matches “zz”."_qs));
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
};

QTEST_MAIN(TestBrowserAccess)
#include "tst_browseraccess.moc"
