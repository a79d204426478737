// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QAccessible>

using namespace lumbra;

class tst_accessiblestates : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    void aControlSaysThatItCanNotBeUsed_data();
    void aControlSaysThatItCanNotBeUsed();
    void aControlSaysSoWhenItsSurroundingsAreDisabled();
    void allElseIsAsBefore();
    void aControlIsFoundFromAboveAndBelow();
    void aControlThatGoesTakesItsInterfaceAlong();
    void aRowSaysWhetherItIsOpen();

private:
    static QAccessibleInterface* of(QmlWindow& window, const char* name) {
        return QAccessible::queryAccessibleInterface(window.find(name));
    }
};

void tst_accessiblestates::aControlSaysThatItCanNotBeUsed_data() {
    QTest::addColumn<QString>("control");
    QTest::newRow("button") << QStringLiteral("Button { text: 'One'");
    QTest::newRow("symbol button") << QStringLiteral("IconButton { text: 'One'; symbol: 'plus'");
    QTest::newRow("check box") << QStringLiteral("CheckBox { text: 'One'");
    QTest::newRow("chip") << QStringLiteral("Chip { label: 'One'");
    QTest::newRow("slider") << QStringLiteral("Slider { text: 'One'");
    QTest::newRow("field") << QStringLiteral("TextField { placeholderText: 'One'");
    QTest::newRow("menu item") << QStringLiteral("MenuItem { text: 'One'");
}

void tst_accessiblestates::aControlSaysThatItCanNotBeUsed() {
    QFETCH(QString, control);
    QmlWindow window(qPrintable(control + QStringLiteral("; objectName: 'control'; enabled: false }")));
    QVERIFY(of(window, "control")->state().disabled);
    QCOMPARE(of(window, "control")->text(QAccessible::Name), QStringLiteral("One"));
    window.find("control")->setProperty("enabled", true);
    QVERIFY(!of(window, "control")->state().disabled);
}

void tst_accessiblestates::aControlSaysSoWhenItsSurroundingsAreDisabled() {
    QmlWindow window("Item { objectName: 'around'; enabled: false; Button { objectName: 'control'; text: 'One' } }");
    QVERIFY(of(window, "control")->state().disabled);
    window.find("around")->setProperty("enabled", true);
    QVERIFY(!of(window, "control")->state().disabled);
}

void tst_accessiblestates::allElseIsAsBefore() {
    QmlWindow window(
        "property int presses: 0\n"
        "Button { objectName: 'button'; text: 'One'; hint: 'More'; x: 10; width: 80; onClicked: ++presses }\n"
        "TextField { objectName: 'field'; text: 'words'; y: 50 }\n"
        "Slider { objectName: 'slider'; y: 90; from: 0; to: 10; value: 4 }");
    QAccessibleInterface* const button = of(window, "button");
    QVERIFY(button->isValid());
    QCOMPARE(button->role(), QAccessible::Button);
    QCOMPARE(button->text(QAccessible::Description), QStringLiteral("More"));
    QCOMPARE(button->rect().width(), 80);
    QVERIFY(button->state().focusable);
    QVERIFY(button->actionInterface());
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(window.root()->property("presses").toInt(), 1);
    QVERIFY(of(window, "field")->textInterface());
    QCOMPARE(of(window, "field")->text(QAccessible::Value), QStringLiteral("words"));
    QVERIFY(of(window, "slider")->valueInterface());
    QCOMPARE(of(window, "slider")->valueInterface()->currentValue().toDouble(), 4.0);
    window.find<QQuickItem>("button")->forceActiveFocus();
    QVERIFY(button->state().focused);
}

void tst_accessiblestates::aControlIsFoundFromAboveAndBelow() {
    QmlWindow window("Button { objectName: 'control'; text: 'One' }");
    QAccessibleInterface* const control = of(window, "control");
    QAccessibleInterface* const parent = control->parent();
    QVERIFY(parent);
    const int index = parent->indexOfChild(control);
    QVERIFY(index >= 0);
    QCOMPARE(parent->child(index), control);
    QCOMPARE(QAccessible::accessibleInterface(QAccessible::uniqueId(control)), control);
}

void tst_accessiblestates::aControlThatGoesTakesItsInterfaceAlong() {
    QmlWindow window("property bool there: true\n"
                     "Loader { active: parent.there; sourceComponent: Button { objectName: 'control'; text: 'One' } }");
    const QAccessible::Id id = QAccessible::uniqueId(of(window, "control"));
    QVERIFY(QAccessible::accessibleInterface(id));
    window.root()->setProperty("there", false);
    QTRY_VERIFY(!QAccessible::accessibleInterface(id));
}

void tst_accessiblestates::aRowSaysWhetherItIsOpen() {
    QmlWindow window("Item { objectName: 'row'; property bool expandable: true; property bool expanded: false\n"
                     "Accessible.role: Accessible.TreeItem; Accessible.name: 'One' }");
    QAccessibleInterface* const row = of(window, "row");
    QCOMPARE(row->role(), QAccessible::TreeItem);
    QCOMPARE(row->text(QAccessible::Name), QStringLiteral("One"));
    QVERIFY(row->state().expandable && row->state().collapsed && !row->state().expanded);
    window.find("row")->setProperty("expanded", true);
    QVERIFY(row->state().expanded && !row->state().collapsed);
    window.find("row")->setProperty("expandable", false);
    QVERIFY(!row->state().expandable && !row->state().expanded && !row->state().collapsed);
}

QTEST_MAIN(tst_accessiblestates)
#include "tst_accessiblestates.moc"
