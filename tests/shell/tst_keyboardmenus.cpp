// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyboardWindow.h"

using namespace lumbra;

// Menus and the palette for who has only a keyboard, or only hears them.
class tst_keyboardmenus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KeyboardWindow::prepare(); }
    void init() { m_ui.open(); }
    void cleanup() { m_ui.close(); }

    void thePaletteIsUsedByItsFieldAlone();
    void theEntriesOfMenusAreReadAndSeen_data();
    void theEntriesOfMenusAreReadAndSeen();

private:
    KeyboardWindow m_ui;
};

void tst_keyboardmenus::thePaletteIsUsedByItsFieldAlone() {
    m_ui.press(Qt::Key_K, Qt::ControlModifier);
    m_ui.settle();
    const Stop field = m_ui.stop();
    QCOMPARE(field.name, QStringLiteral("Jump to a project, folder or file"));
    QCOMPARE(field.role, QAccessible::EditableText);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        m_ui.press(key);
        QCOMPARE(m_ui.focused(), field.item);
    }
    // The row that the keys act on is another after each step, is said to be so, and looks so.
    for (int step = 0; step < 3; ++step) {
        const QImage before = m_ui.picture();
        m_ui.press(Qt::Key_Down);
        m_ui.settle();
        QQuickItem* row = nullptr;
        const QList<QQuickItem*> rows = m_ui.ofType("PaletteRow")->parentItem()->childItems();
        for (QQuickItem* other : rows)
            if (const auto* read = QAccessible::queryAccessibleInterface(other);
                read && read->role() == QAccessible::ListItem && read->state().selected) {
                QVERIFY(!row);
                row = other;
            }
        QVERIFY(row);
        const QRect around = row->mapRectToScene(QRectF(0, 0, row->width(), row->height())).toRect();
        QVERIFY(m_ui.picture().copy(around) != before.copy(around));
        QVERIFY(!QAccessible::queryAccessibleInterface(row)->text(QAccessible::Name).isEmpty());
    }
}

void tst_keyboardmenus::theEntriesOfMenusAreReadAndSeen_data() {
    QTest::addColumn<QString>("menu");
    for (const char* menu : {"bar", "file", "project", "new", "path", "order"})
        QTest::newRow(menu) << QString::fromLatin1(menu);
}

void tst_keyboardmenus::theEntriesOfMenusAreReadAndSeen() {
    QFETCH(QString, menu);
    m_ui.openFolder("site/drafts");
    QTRY_VERIFY(m_ui.ofType("AssetTile"));
    Qt::Key opens = Qt::Key_Menu;
    if (menu == u"bar") {
        opens = Qt::Key_F10;
    } else if (menu == u"file") {
        m_ui.library().reveal(m_ui.at("site/drafts/first.png"));
        QTRY_VERIFY(!m_ui.library().pendingReveal());
        QTRY_VERIFY(m_ui.focused());
    } else if (menu == u"project") {
        m_ui.goToProject(QStringLiteral("film"));
    } else {
        opens = Qt::Key_Return;
        QQuickItem* item = m_ui.ofType(menu == u"new" ? "MenuIconButton" : "SortMenu");
        if (menu == u"path") { // the last of its steps
            const QList<QQuickItem*> steps = m_ui.ofType("StepButton")->parentItem()->parentItem()->childItems();
            for (QQuickItem* step : steps)
                if (QQuickItem* const button = m_ui.ofType(step, "StepButton"))
                    item = button;
        }
        item->forceActiveFocus(Qt::BacktabFocusReason);
    }
    m_ui.settle();
    QQuickItem* const before = m_ui.focused();
    m_ui.press(opens);
    m_ui.settle();
    QVERIFY(m_ui.focused() != before);
    QList<Stop> entries;
    do {
        m_ui.press(Qt::Key_Down);
        m_ui.settle();
        entries.append(m_ui.stop());
        QVERIFY(entries.size() < 30);
    } while (entries.size() == 1 || entries.last().item != entries.first().item); // it goes round
    QVERIFY(entries.size() > 2);
    for (qsizetype i = 0; i + 1 < entries.size(); ++i) {
        m_ui.check(entries[i], entries[i + 1]);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(entries[i].role == QAccessible::MenuItem || entries[i].role == QAccessible::CheckBox);
    }
    m_ui.press(Qt::Key_Escape);
    QTRY_COMPARE(m_ui.focused(), before);
}

QTEST_MAIN(tst_keyboardmenus)
#include "tst_keyboardmenus.moc"
