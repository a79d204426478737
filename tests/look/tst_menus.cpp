// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

using namespace lumbra;

class tst_menus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void aMenuIsUsedByKey();
    void theKeysLeadOnAtOnceWhereASubmenuWasClosed();
    void aMenuShowsTheShortcutOfItsAction();
    void aMenuSkipsWhatIsDisabled();
    void aMenuGoesRoundAtItsEnds();
    void aContextMenuOpensByRightClickAndByKey();
    void aMenuHangsBelowWhatOpenedItOrStandsOnIt_data();
    void aMenuHangsBelowWhatOpenedItOrStandsOnIt();
    void theMenuBarIsUsedByKey();
    void theMenuBarLightsTheMenuThatIsOpenAndNoOther();
    void aMenuOpensAgainAfterAnEntryWasChosenOrItWasLeft_data();
    void aMenuOpensAgainAfterAnEntryWasChosenOrItWasLeft();
    void aMenuOfActionsMakesItsEntriesWhenItOpens();
};

void tst_menus::aMenuIsUsedByKey() {
    QmlWindow window("property string chosen\n"
                     "Menu { id: menu; objectName: 'menu'; MenuItem { text: 'One'; onTriggered: chosen = text }"
                     "Menu { title: 'More'; MenuItem { text: 'Deep'; onTriggered: chosen = text } }"
                     "MenuSeparator {} MenuItem { text: 'Two'; onTriggered: chosen = text } }\n"
                     "function open() { menu.popup() }");
    const auto choose = [&](const QList<int>& keys) {
        QMetaObject::invokeMethod(window.root(), "open");
        QTRY_VERIFY(window.value("menu", "opened").toBool());
        for (const int key : keys)
            window.press(key);
        QTRY_VERIFY(!window.value("menu", "visible").toBool());
    };
    choose({Qt::Key_Down, Qt::Key_Return});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("One"));
    choose({Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Space});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
    window.root()->setProperty("chosen", QString());
    choose({Qt::Key_Escape});
    QCOMPARE(window.root()->property("chosen").toString(), QString());
    choose({Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Deep"));
}

void tst_menus::theKeysLeadOnAtOnceWhereASubmenuWasClosed() {
    QmlWindow window("property string chosen\n"
                     "Menu { id: menu; objectName: 'menu'; Menu { title: 'More'; MenuItem { text: 'Deep' } }"
                     "MenuItem { text: 'Two'; onTriggered: chosen = text } }\n"
                     "function open() { menu.popup() }");
    QMetaObject::invokeMethod(window.root(), "open");
    QTRY_VERIFY(window.value("menu", "opened").toBool());
    for (const int key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Down, Qt::Key_Return})
        window.press(key);
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
}

void tst_menus::aMenuShowsTheShortcutOfItsAction() {
    QmlWindow window("C.Action { id: action; text: 'New Folder'; shortcut: 'Ctrl+Shift+N' }\n"
                     "MenuItem { objectName: 'item'; action: action }",
                     "import QtQuick.Controls.Basic as C");
    QCOMPARE(window.value("item", "shortcutText").toString(), QStringLiteral("Ctrl+Shift+N"));
    QCOMPARE(window.value("item", "text").toString(), QStringLiteral("New Folder"));
}

void tst_menus::aMenuSkipsWhatIsDisabled() {
    QmlWindow window("property string chosen\n"
                     "Menu { id: menu; objectName: 'menu'; MenuItem { text: 'One'; enabled: false }"
                     "MenuItem { text: 'Two'; onTriggered: chosen = text } }\n"
                     "function open() { menu.popup() }");
    QMetaObject::invokeMethod(window.root(), "open");
    QTRY_VERIFY(window.value("menu", "opened").toBool());
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Return);
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
}

void tst_menus::aMenuGoesRoundAtItsEnds() {
    QmlWindow window("property string chosen\n"
                     "Menu { id: menu; objectName: 'menu'; MenuItem { text: 'Never'; enabled: false }"
                     "MenuItem { text: 'One'; onTriggered: chosen = text } MenuSeparator {}"
                     "MenuItem { text: 'Two'; onTriggered: chosen = text } MenuItem { text: 'Nor'; enabled: false } }\n"
                     "function open() { menu.popup() }");
    const auto choose = [&](const QList<Qt::Key>& keys) {
        QMetaObject::invokeMethod(window.root(), "open");
        QTRY_VERIFY(window.value("menu", "opened").toBool());
        for (const Qt::Key key : keys)
            window.press(key);
        window.press(Qt::Key_Return);
        QTRY_VERIFY(!window.value("menu", "visible").toBool());
    };
    choose({Qt::Key_Up});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
    choose({Qt::Key_Down, Qt::Key_Up, Qt::Key_Up});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("One"));
    choose({Qt::Key_Down, Qt::Key_Down, Qt::Key_Down});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("One"));
    choose({Qt::Key_Up, Qt::Key_Down, Qt::Key_Up});
    QCOMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
}

void tst_menus::aContextMenuOpensByRightClickAndByKey() {
    QmlWindow window("property string chosen\n"
                     "Item { objectName: 'row'; width: 200; height: 28; activeFocusOnTab: true\n"
                     "ContextMenu { objectName: 'context'; menu: Component { Menu {\n"
                     "MenuItem { text: 'Rename'; onTriggered: chosen = text } } } } }");
    window.click("row", Qt::RightButton);
    QTRY_VERIFY(window.value("context", "opened").toBool());
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Return);
    QTRY_COMPARE(window.root()->property("chosen").toString(), QStringLiteral("Rename"));
    QTRY_VERIFY(!window.value("context", "opened").toBool());

    for (const auto& [key, modifiers] : {std::pair(Qt::Key_Menu, Qt::NoModifier), {Qt::Key_F10, Qt::ShiftModifier}}) {
        window.find<QQuickItem>("row")->forceActiveFocus();
        window.press(key, modifiers);
        QTRY_VERIFY(window.value("context", "opened").toBool());
        window.press(Qt::Key_Escape);
        QTRY_VERIFY(!window.value("context", "opened").toBool());
    }
}

void tst_menus::aMenuHangsBelowWhatOpenedItOrStandsOnIt_data() {
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("below");
    QTest::newRow("there is room below") << 100 << true;
    QTest::newRow("at the window's foot") << 370 << false;
}

void tst_menus::aMenuHangsBelowWhatOpenedItOrStandsOnIt() {
    QFETCH(int, y);
    QFETCH(bool, below);
    QmlWindow window("Item { objectName: 'row'; width: 200; height: 28\n"
                     "ContextMenu { id: context; menu: Component { Menu { id: menu; objectName: 'menu'\n"
                     "Component { id: item; MenuItem { text: 'One' } } Component { id: line; MenuSeparator {} }\n"
                     "Component.onCompleted: { for (let i = 0; i < 6; ++i)\n"
                     "addItem((i % 3 === 1 ? line : item).createObject(contentItem)) } } } } }\n"
                     "function open() { context.openBelow(0, 0, 28) }");
    window.find<QQuickItem>("row")->setY(y);
    QMetaObject::invokeMethod(window.root(), "open");
    QTRY_VERIFY(window.value("menu", "opened").toBool());
    const auto* drawn = window.value("menu", "contentItem").value<QQuickItem*>()->parentItem();
    const double top = drawn->mapToScene(QPointF()).y();
    QCOMPARE(below ? top : top + drawn->height(), below ? y + 28.0 : double(y));
}

void tst_menus::theMenuBarIsUsedByKey() {
    QmlWindow window(
        "property string chosen\n"
        "MenuBar { id: bar; width: parent.width\n"
        "Menu { title: 'File'; objectName: 'file'; MenuItem { text: 'One'; onTriggered: chosen = text } }\n"
        "Menu { title: 'Edit'; objectName: 'edit'; MenuItem { text: 'Two'; onTriggered: chosen = text } } "
        "}");
    window.press(Qt::Key_F10);
    QTRY_VERIFY(window.value("file", "visible").toBool());
    window.press(Qt::Key_Right);
    QTRY_VERIFY(window.value("edit", "visible").toBool());
    QVERIFY(!window.value("file", "visible").toBool());
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Return);
    QTRY_COMPARE(window.root()->property("chosen").toString(), QStringLiteral("Two"));
    QVERIFY(!window.value("edit", "visible").toBool());
    window.press(Qt::Key_F10);
    QTRY_VERIFY(window.value("file", "visible").toBool());
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("file", "visible").toBool());
}

void tst_menus::theMenuBarLightsTheMenuThatIsOpenAndNoOther() {
    QmlWindow window("MenuBar { objectName: 'bar'; width: parent.width\n"
                     "Menu { title: 'One'; MenuItem { text: 'a' } }\n"
                     "Menu { title: 'Two'; MenuItem { text: 'b' } } }");
    const auto item = [&](int index) {
        QQuickItem* found = nullptr;
        QMetaObject::invokeMethod(window.find<QQuickItem>("bar"), "itemAt", Q_RETURN_ARG(QQuickItem*, found),
                                  Q_ARG(int, index));
        return found;
    };
    const auto at = [&](int index) { // beside its letters
        return item(index)->mapToScene(QPointF(3, item(index)->height() / 2)).toPoint();
    };
    const auto isLit = [&](int index) {
        const QImage picture = window->grabWindow();
        return picture.pixel(at(index)) != picture.pixel(picture.width() - 5, at(index).y());
    };
    QTRY_VERIFY(item(1));
    QTest::mouseMove(window.window(), at(0));
    QTRY_VERIFY(isLit(0));
    QTest::mouseClick(window.window(), Qt::LeftButton, {}, at(0));
    QTRY_VERIFY(isLit(0));
    window.press(Qt::Key_Right); // the pointer still rests on the first
    QTRY_VERIFY(isLit(1));
    QTRY_VERIFY(!isLit(0));
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!isLit(1));
}

void tst_menus::aMenuOpensAgainAfterAnEntryWasChosenOrItWasLeft_data() {
    QTest::addColumn<bool>("byPointer");
    QTest::addColumn<QList<int>>("keys");
    for (const bool byPointer : {false, true}) {
        QTest::addRow("%s, entry", byPointer ? "pointer" : "keys")
            << byPointer << QList<int>{Qt::Key_Down, Qt::Key_Return};
        QTest::addRow("%s, left", byPointer ? "pointer" : "keys") << byPointer << QList<int>{Qt::Key_Escape};
    }
}
void tst_menus::aMenuOpensAgainAfterAnEntryWasChosenOrItWasLeft() {
    QFETCH(bool, byPointer);
    QFETCH(QList<int>, keys);
    QmlWindow window("MenuBar { objectName: 'bar'; width: parent.width\n"
                     "Menu { objectName: 'menu'; title: 'One'; MenuItem { text: 'a' } } }");
    const QPoint at = window.find<QQuickItem>("bar")->mapToScene(QPointF(20, 10)).toPoint();
    for (int time = 0; time < 3; ++time) {
        if (byPointer)
            QTest::mouseClick(window.window(), Qt::LeftButton, {}, at);
        else
            window.press(Qt::Key_F10);
        QTRY_VERIFY(window.value("menu", "opened").toBool());
        for (const int key : keys)
            window.press(Qt::Key(key));
        QTRY_VERIFY(!window.value("menu", "visible").toBool());
    }
    if (!byPointer)
        return;
    for (const bool opens : {true, false, true, false}) { // and closes by a click where it opened
        QTest::mouseClick(window.window(), Qt::LeftButton, {}, at);
        QTRY_COMPARE(window.value("menu", "visible").toBool(), opens);
        QCoreApplication::processEvents();
        QCOMPARE(window.value("menu", "visible").toBool(), opens);
    }
}

void tst_menus::aMenuOfActionsMakesItsEntriesWhenItOpens() {
    QmlWindow window("property string chosen\n"
                     "MenuBar { width: parent.width\n"
                     "ActionMenu { objectName: 'menu'; title: 'File'\n"
                     "T.Action { text: 'One'; shortcut: 'Ctrl+1'; onTriggered: chosen += '1' }\n"
                     "QtObject {}\n"
                     "MenuAction { text: 'Two'; shortcut: 'Ctrl+2'; possible: false; onTriggered: chosen += '2' }\n"
                     "T.Action { text: 'Three'; onTriggered: chosen += '3' } } }",
                     "import QtQuick.Templates as T\n");
    const auto* const menu = window.find<QObject>("menu");
    const auto chosen = [&] { return window.root()->property("chosen").toString(); };
    QCOMPARE(menu->property("count").toInt(), 0);
    QTest::keyClick(window.window(), Qt::Key_1, Qt::ControlModifier);
    QTest::keyClick(window.window(), Qt::Key_2, Qt::ControlModifier);
    QTRY_COMPARE(chosen(), QStringLiteral("1"));
    for (int time = 0; time < 2; ++time) {
        window.press(Qt::Key_F10);
        QTRY_VERIFY(menu->property("opened").toBool());
        QCOMPARE(menu->property("count").toInt(), 4);
        auto* const entries = menu->property("contentItem").value<QQuickItem*>();
        QTRY_COMPARE(entries->height(), entries->implicitHeight()); // all are seen
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Return);
        QTRY_VERIFY(!menu->property("visible").toBool());
    }
    QCOMPARE(chosen(), QStringLiteral("133"));
    QTest::keyClick(window.window(), Qt::Key_1, Qt::ControlModifier);
    QTest::keyClick(window.window(), Qt::Key_2, Qt::ControlModifier);
    QTRY_COMPARE(chosen(), QStringLiteral("1331"));
}

QTEST_MAIN(tst_menus)
#include "tst_menus.moc"
