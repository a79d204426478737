// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QAccessible>

using namespace lumbra;

class tst_controls : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void aButtonIsPressedByKey_data();
    void aButtonIsPressedByKey();
    void aButtonIsPressedByAssistiveTechnology_data();
    void aButtonIsPressedByAssistiveTechnology();
    void focusShowsOnlyForTheKeyboard();
    void aDisabledButtonIsPassedOver();
    void aSymbolButtonHasANameAndAToolTip();
    void aToolTipStaysAwayOncePressedUntilThePointerComesBack();
    void aCheckBoxIsTickedByKey();
    void aSliderMovesByKey();
    void aChipTellsWhetherItIsOn();
    void aDimChipCanStillBeChosen();
    void aDimChipThatIsOnIsNotDim();
    void escapeEmptiesASearchFirst();
    void theClearButtonEmptiesAField();
    void aNameIsSelectedWholeOnFocus();
    void aSheetKeepsTheFocusInside();
    void whatLiesBehindASheetCanNotTakeTheKeys();
    void aSheetUnderAnotherLeavesItTheKeys();
    void escapeDismissesASheet();
    void aSheetThatMustBeAnsweredIgnoresEscape();
    void escapeReachesOnlyWhatLiesOnTop();
    void escapeClosesAMenuBeforeItsSheet();
    void shortcutsOfTheMenusRestBehindASheet();
    void anAlertIsAnsweredByReturn();
    void escapeCancelsAnAlert();
    void escapeAcknowledgesAnAlertWithOneButton();
    void aDestructiveAlertProposesToCancel();
    void anEmptyStateOffersItsButtonOnlyIfItHasOne();
    void aSymbolTakesTheSizeItIsGiven();
    void shortcutsAreWrittenOut_data();
    void shortcutsAreWrittenOut();
};

void tst_controls::aButtonIsPressedByKey_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("enter") << int(Qt::Key_Enter);
}

void tst_controls::aButtonIsPressedByKey() {
    QFETCH(int, key);
    QmlWindow window("property int presses: 0\n"
                     "Column { Button { text: 'One'; onClicked: ++presses }"
                     "IconButton { symbol: 'plus'; text: 'Two'; onClicked: ++presses }"
                     "Chip { label: 'Three'; onClicked: ++presses } }");
    for (int presses = 1; presses <= 3; ++presses) {
        window.press(Qt::Key_Tab);
        window.press(key);
        QCOMPARE(window.root()->property("presses").toInt(), presses);
    }
}

void tst_controls::aButtonIsPressedByAssistiveTechnology_data() {
    QTest::addColumn<QString>("control");
    QTest::newRow("button") << QStringLiteral("Button { text: 'One'");
    QTest::newRow("symbol button") << QStringLiteral("IconButton { text: 'One'; symbol: 'plus'");
    QTest::newRow("chip") << QStringLiteral("Chip { label: 'One'");
    QTest::newRow("check box") << QStringLiteral("CheckBox { text: 'One'");
}

void tst_controls::aButtonIsPressedByAssistiveTechnology() {
    QFETCH(QString, control);
    QAccessible::setActive(true);
    QmlWindow window(qPrintable(QStringLiteral("property int presses: 0\n") + control
                                + QStringLiteral("; objectName: 'control'; onClicked: ++presses }")));
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(window.find("control"));
    QVERIFY(accessible->actionInterface());
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(window.root()->property("presses").toInt(), 1);
}

void tst_controls::focusShowsOnlyForTheKeyboard() {
    QmlWindow window("Button { objectName: 'button'; text: 'One' }");
    window.click("button");
    QVERIFY(!window.value("button", "visualFocus").toBool());
    window.press(Qt::Key_Tab);
    QVERIFY(window.value("button", "visualFocus").toBool());
}

void tst_controls::aDisabledButtonIsPassedOver() {
    QmlWindow window("Row { Button { text: 'One'; enabled: false } Button { objectName: 'second'; text: 'Two' } }");
    window.press(Qt::Key_Tab);
    QVERIFY(window.value("second", "activeFocus").toBool());
}

void tst_controls::aSymbolButtonHasANameAndAToolTip() {
    QmlWindow window("IconButton { objectName: 'button'; symbol: 'plus'; text: 'New Project'; x: 50; y: 50 }");
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(window.find("button"));
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("New Project"));
    QTest::mouseMove(window.window(), window.centreOf("button"));
    QTRY_VERIFY(window.root()->findChild<QObject*>(QStringLiteral("toolTip")));
    QTRY_COMPARE(window.value("toolTip", "text").toString(), QStringLiteral("New Project"));
    QTest::mouseMove(window.window(), QPoint(400, 300));
    QTRY_VERIFY(!window.root()->findChild<QObject*>(QStringLiteral("toolTip")));
}

void tst_controls::aToolTipStaysAwayOncePressedUntilThePointerComesBack() {
    QmlWindow window("IconButton { objectName: 'button'; text: 'New Project'; x: 50; y: 50\n"
                     "Hint { objectName: 'hint'; text: 'More'; control: parent } }");
    const auto wanted = [&] { return window.value("hint", "wanted").toBool(); };
    QTest::mouseMove(window.window(), window.centreOf("button"));
    QTRY_VERIFY(wanted());
    window.click("button");
    QVERIFY(!wanted());
    QTest::mouseMove(window.window(), window.centreOf("button") + QPoint(3, 3));
    QVERIFY(!wanted());
    QTest::mouseMove(window.window(), QPoint(400, 300));
    QTest::mouseMove(window.window(), window.centreOf("button"));
    QTRY_VERIFY(wanted());
    window.find("hint")->setProperty("muted", true);
    QVERIFY(!wanted());
}

void tst_controls::aCheckBoxIsTickedByKey() {
    QmlWindow window("CheckBox { objectName: 'box'; text: 'Subfolders' }");
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Space);
    QVERIFY(window.value("box", "checked").toBool());
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(window.find("box"));
    QVERIFY(accessible->state().checkable);
    QVERIFY(accessible->state().checked);
    window.click("box");
    QVERIFY(!window.value("box", "checked").toBool());
}

void tst_controls::aSliderMovesByKey() {
    QmlWindow window("Slider { objectName: 'slider'; text: 'Zoom'; from: 100; to: 400; stepSize: 20; value: 200 }");
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Right);
    QCOMPARE(window.value("slider", "value").toInt(), 220);
    window.press(Qt::Key_Left);
    window.press(Qt::Key_Left);
    QCOMPARE(window.value("slider", "value").toInt(), 180);
}

void tst_controls::aChipTellsWhetherItIsOn() {
    QmlWindow window("Chip { objectName: 'chip'; label: 'Images'; count: '1.5k'; on: true }");
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(window.find("chip"));
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Images"));
    QCOMPARE(accessible->text(QAccessible::Description), QStringLiteral("1.5k"));
    QVERIFY(accessible->state().checked);
    window.find("chip")->setProperty("on", false);
    QVERIFY(!accessible->state().checked);
}

void tst_controls::aDimChipCanStillBeChosen() {
    QmlWindow window("property int presses: 0\n"
                     "Chip { objectName: 'chip'; label: 'Audio'; dim: true; onClicked: ++presses }");
    QTRY_COMPARE(window.value("chip", "opacity").toDouble(), 0.5);
    window.click("chip");
    QCOMPARE(window.root()->property("presses").toInt(), 1);
}

void tst_controls::aDimChipThatIsOnIsNotDim() {
    QmlWindow window("Chip { objectName: 'chip'; label: 'Audio'; dim: true; on: true }");
    QCOMPARE(window.value("chip", "opacity").toDouble(), 1.0);
}

void tst_controls::escapeEmptiesASearchFirst() {
    QmlWindow window("property int escapes: 0\n"
                     "Keys.onEscapePressed: ++escapes\n"
                     "SearchField { objectName: 'field'; focus: true }");
    window.find<QQuickItem>("field")->forceActiveFocus();
    for (const char letter : {'c', 'a', 't', 's'})
        QTest::keyClick(window.window(), letter);
    QCOMPARE(window.value("field", "text").toString(), QStringLiteral("cats"));
    window.press(Qt::Key_Escape);
    QCOMPARE(window.value("field", "text").toString(), QString());
    QCOMPARE(window.root()->property("escapes").toInt(), 0);
    window.press(Qt::Key_Escape);
    QCOMPARE(window.root()->property("escapes").toInt(), 1);
}

void tst_controls::theClearButtonEmptiesAField() {
    QmlWindow window("TextField { objectName: 'field'; clearable: true; text: 'cats'; width: 200 }");
    auto* field = window.find<QQuickItem>("field");
    QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier,
                      field->mapToScene(QPointF(field->width() - 14, field->height() / 2)).toPoint());
    QCOMPARE(window.value("field", "text").toString(), QString());
}

void tst_controls::aNameIsSelectedWholeOnFocus() {
    QmlWindow window("TextField { objectName: 'field'; selectsAll: true; text: 'untitled folder' }");
    window.press(Qt::Key_Tab);
    QCOMPARE(window.value("field", "selectedText").toString(), QStringLiteral("untitled folder"));
}

void tst_controls::aSheetKeepsTheFocusInside() {
    QmlWindow window("Button { objectName: 'behind'; text: 'Behind' }\n"
                     "Sheet { objectName: 'sheet'; visible: true; contentItem: Row {\n"
                     "Button { objectName: 'first'; text: 'One' } Button { objectName: 'second'; text: 'Two' } } }");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    QSet<QString> visited;
    for (int i = 0; i < 5; ++i) {
        window.press(Qt::Key_Tab);
        visited.insert(window->activeFocusItem()->objectName());
    }
    QVERIFY(visited.contains(QStringLiteral("first")));
    QVERIFY(visited.contains(QStringLiteral("second")));
    QVERIFY(!visited.contains(QStringLiteral("behind")));
    window.click("behind");
    QVERIFY(!window.value("behind", "activeFocus").toBool());
}

void tst_controls::whatLiesBehindASheetCanNotTakeTheKeys() {
    QmlWindow window(
        "TextField { objectName: 'behind' }\n"
        "Sheet { objectName: 'sheet'; visible: true; contentItem: Button { objectName: 'inside'; focus: true } }");
    QTRY_VERIFY(window.value("inside", "activeFocus").toBool());
    window.find<QQuickItem>("behind")->forceActiveFocus();
    QVERIFY(window.value("inside", "activeFocus").toBool());
    QMetaObject::invokeMethod(window.find("sheet"), "close");
    QTRY_VERIFY(!window.value("sheet", "visible").toBool());
    window.find<QQuickItem>("behind")->forceActiveFocus();
    QVERIFY(window.value("behind", "activeFocus").toBool());
}

void tst_controls::aSheetUnderAnotherLeavesItTheKeys() {
    QmlWindow window(
        "Sheet { objectName: 'first'; visible: true; contentItem: Button { objectName: 'one'; focus: true } }\n"
        "Sheet { objectName: 'second'; contentItem: Button { objectName: 'two'; focus: true } }\n"
        "TextField { objectName: 'behind' }");
    QTRY_VERIFY(window.value("one", "activeFocus").toBool());
    QMetaObject::invokeMethod(window.find("second"), "open");
    QTRY_VERIFY(window.value("two", "activeFocus").toBool());
    window.find<QQuickItem>("behind")->forceActiveFocus();
    QVERIFY(window.value("two", "activeFocus").toBool());
    QMetaObject::invokeMethod(window.find("second"), "close");
    QTRY_VERIFY(!window.value("second", "visible").toBool());
    window.find<QQuickItem>("behind")->forceActiveFocus();
    QVERIFY(window.value("one", "activeFocus").toBool());
}

void tst_controls::escapeDismissesASheet() {
    QmlWindow window("property int dismissals: 0\n"
                     "Sheet { objectName: 'sheet'; visible: true; onDismissed: ++dismissals\n"
                     "contentItem: TextField { objectName: 'field'; focus: true } }");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    window.find<QQuickItem>("field")->forceActiveFocus();
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("sheet", "visible").toBool());
    QCOMPARE(window.root()->property("dismissals").toInt(), 1);
}

void tst_controls::aSheetThatMustBeAnsweredIgnoresEscape() {
    QmlWindow window("Sheet { objectName: 'sheet'; visible: true; dismissable: false\n"
                     "contentItem: Button { text: 'One' } }");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    window.press(Qt::Key_Escape);
    QVERIFY(window.value("sheet", "opened").toBool());
}

void tst_controls::escapeReachesOnlyWhatLiesOnTop() {
    QmlWindow window("Sheet { objectName: 'sheet'; visible: true; contentItem: TextField { focus: true } }\n"
                     "Alert { id: alert; objectName: 'alert'; title: 'Title' }\n"
                     "function raise() { alert.open() }");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    QMetaObject::invokeMethod(window.root(), "raise");
    QTRY_VERIFY(window.value("alert", "opened").toBool());
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("alert", "visible").toBool());
    QVERIFY(window.value("sheet", "opened").toBool());
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("sheet", "visible").toBool());
}

void tst_controls::escapeClosesAMenuBeforeItsSheet() {
    QmlWindow window("Sheet { objectName: 'sheet'; visible: true; contentItem: Button { text: 'One'\n"
                     "Menu { id: menu; objectName: 'menu'; MenuItem { text: 'Entry' } } } }\n"
                     "function raise() { menu.popup() }");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    QMetaObject::invokeMethod(window.root(), "raise");
    QTRY_VERIFY(window.value("menu", "opened").toBool());
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("menu", "visible").toBool());
    QVERIFY(window.value("sheet", "opened").toBool());
}

namespace {
const char alert[] = "property string answer\n"
                     "Alert { objectName: 'alert'; visible: true; title: 'Title'; message: 'Message'\n"
                     "onConfirmed: answer += 'confirmed'; onCancelled: answer += 'cancelled'";
}

void tst_controls::shortcutsOfTheMenusRestBehindASheet() {
    QmlWindow window("id: root; property int times: 0\n"
                     "MenuBar { Menu { title: 'File'; MenuItem { action: MenuAction {"
                     "text: 'New'; shortcut: 'Ctrl+N'; onTriggered: ++root.times } } } }"
                     "Sheet { objectName: 'sheet'; contentItem: Button { text: 'One' } }");
    window.press(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(window.root()->property("times").toInt(), 1);
    QMetaObject::invokeMethod(window.find("sheet"), "open");
    QTRY_VERIFY(window.value("sheet", "opened").toBool());
    window.press(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(window.root()->property("times").toInt(), 1);
    window.press(Qt::Key_Escape);
    QTRY_VERIFY(!window.value("sheet", "visible").toBool());
    window.press(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(window.root()->property("times").toInt(), 2);
}

void tst_controls::anAlertIsAnsweredByReturn() {
    QmlWindow window((QByteArray(alert) + "; cancel: 'Cancel' }").constData());
    QTRY_VERIFY(window.value("alert", "opened").toBool());
    window.press(Qt::Key_Return);
    QCOMPARE(window.root()->property("answer").toString(), QStringLiteral("confirmed"));
    QTRY_VERIFY(!window.value("alert", "visible").toBool());
}

void tst_controls::escapeCancelsAnAlert() {
    QmlWindow window((QByteArray(alert) + "; cancel: 'Cancel' }").constData());
    QTRY_VERIFY(window.value("alert", "opened").toBool());
    window.press(Qt::Key_Escape);
    QCOMPARE(window.root()->property("answer").toString(), QStringLiteral("cancelled"));
}

void tst_controls::escapeAcknowledgesAnAlertWithOneButton() {
    QmlWindow window((QByteArray(alert) + " }").constData());
    QTRY_VERIFY(window.value("alert", "opened").toBool());
    window.press(Qt::Key_Escape);
    QCOMPARE(window.root()->property("answer").toString(), QStringLiteral("confirmed"));
}

void tst_controls::aDestructiveAlertProposesToCancel() {
    QmlWindow window((QByteArray(alert) + "; cancel: 'Cancel'; destructive: true }").constData());
    QTRY_VERIFY(window.value("alert", "opened").toBool());
    window.press(Qt::Key_Return);
    QCOMPARE(window.root()->property("answer").toString(), QStringLiteral("cancelled"));
}

void tst_controls::anEmptyStateOffersItsButtonOnlyIfItHasOne() {
    QmlWindow window(
        "property int presses: 0\n"
        "EmptyState { id: empty; objectName: 'empty'; width: 600; symbol: 'tray'; title: 'Nothing here yet'\n"
        "text: 'Files appear here.'; onActivated: ++presses }");
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Space);
    QCOMPARE(window.root()->property("presses").toInt(), 0);
    window.find("empty")->setProperty("buttonText", QStringLiteral("Add Files…"));
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Space);
    QCOMPARE(window.root()->property("presses").toInt(), 1);
}

void tst_controls::aSymbolTakesTheSizeItIsGiven() {
    QmlWindow window("Symbol { objectName: 'symbol'; name: 'star.fill'; size: 40; color: Theme.amber }");
    QCOMPARE(window.find<QQuickItem>("symbol")->size(), QSizeF(40, 40));
    const QImage picture = window->grabWindow();
    const QColor middle = picture.pixelColor(20, 20);
    QVERIFY(middle.red() > 250 && middle.blue() < 80);
}

void tst_controls::shortcutsAreWrittenOut_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("text");
    QTest::newRow("a string") << QStringLiteral("Shortcuts.text('Ctrl+Shift+N')") << QStringLiteral("Ctrl+Shift+N");
    QTest::newRow("a standard key") << QStringLiteral("Shortcuts.text(StandardKey.Delete)") << QStringLiteral("Del");
    QTest::newRow("nothing") << QStringLiteral("Shortcuts.text('')") << QString();
}

void tst_controls::shortcutsAreWrittenOut() {
    QFETCH(QString, expression);
    QFETCH(QString, text);
    QmlWindow window(qPrintable(QStringLiteral("property string written: ") + expression));
    QCOMPARE(window.root()->property("written").toString(), text);
}

QTEST_MAIN(tst_controls)
#include "tst_controls.moc"
