// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyboardWindow.h"

using namespace lumbra;

// What is done by hand all day, with the keyboard alone.
class tst_keyboardjobs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KeyboardWindow::prepare(); }
    void init() { m_ui.open(); }
    void cleanup() { m_ui.close(); }

    void whatAToastOffersToUndoIsUndoneByKey();
    void aFieldUndoesItsOwnLetters();
    void behindASheetNothingIsUndone();
    void theFilterOfThePageIsReachedByKeyAndLeftForTheFiles();
    void wherePagesHaveNoFilterTheKeysStay();
    void behindThePaletteTheFilterIsNotReached();
    void whereThePaletteLeadsTheKeysAreForThePage_data();
    void whereThePaletteLeadsTheKeysAreForThePage();
    void aPaletteThatIsClosedGivesTheKeysBack();

private:
    bool isAtTheTiles() const { return m_ui.isAt("lumbra::KeyFocus"); }
    void offerUndo() {
        m_ui.library().setToast(Toast{.text = QStringLiteral("Moved"), .undo = [this] { ++m_undone; }});
    }
    // Anywhere but in the page, as after a walk with the Tab key.
    void goElsewhere() { m_ui.goToProject(QStringLiteral("film")); }

    KeyboardWindow m_ui;
    int m_undone = 0;
};

void tst_keyboardjobs::whatAToastOffersToUndoIsUndoneByKey() {
    m_undone = 0;
    m_ui.openFolder("site");
    m_ui.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_undone, 0);
    offerUndo();
    QCOMPARE(QAccessible::queryAccessibleInterface(m_ui.named("capsuleButton"))->text(QAccessible::Description),
             QStringLiteral("Undo (Ctrl+Z)"));
    m_ui.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_undone, 1);
    QVERIFY(!m_ui.library().toast());
    m_ui.press(Qt::Key_Z, Qt::ControlModifier); // with the toast its offer has gone
    QCOMPARE(m_undone, 1);
    m_ui.library().setToast(Toast{.text = QStringLiteral("Copied")});
    m_ui.press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(m_ui.library().toast());
}

void tst_keyboardjobs::aFieldUndoesItsOwnLetters() {
    m_undone = 0;
    m_ui.press(Qt::Key_F, Qt::ControlModifier);
    m_ui.type("a");
    offerUndo();
    m_ui.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_ui.named("search")->property("text").toString(), QString());
    QCOMPARE(m_undone, 0);
}

void tst_keyboardjobs::behindASheetNothingIsUndone() {
    m_undone = 0;
    offerUndo();
    m_ui.library().setLastError(QStringLiteral("The disk is full."));
    QTRY_VERIFY(m_ui.ofType("QQuickOverlay"));
    m_ui.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_undone, 0);
    m_ui.press(Qt::Key_Return);
    QTRY_VERIFY(!m_ui.library().lastError());
}

void tst_keyboardjobs::theFilterOfThePageIsReachedByKeyAndLeftForTheFiles() {
    m_ui.openFolder("site");
    goElsewhere();
    m_ui.press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(m_ui.named("search")->hasActiveFocus());
    m_ui.type("hero");
    QTRY_COMPARE(m_ui.library().place(), Place::folder(m_ui.at("site")));
    m_ui.press(Qt::Key_Return);
    QVERIFY(isAtTheTiles());
    m_ui.press(Qt::Key_F, Qt::ControlModifier); // what was typed is there to be typed over
    QVERIFY(m_ui.named("search")->hasActiveFocus());
    QCOMPARE(m_ui.named("search")->property("selectedText").toString(), QStringLiteral("hero"));
    m_ui.press(Qt::Key_Escape);
    QCOMPARE(m_ui.named("search")->property("text").toString(), QString());
}

void tst_keyboardjobs::wherePagesHaveNoFilterTheKeysStay() {
    m_ui.library().setPlace(Place::tidy());
    m_ui.settle();
    goElsewhere();
    const QQuickItem* const before = m_ui.focused();
    m_ui.press(Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(m_ui.focused(), before);
}

void tst_keyboardjobs::behindThePaletteTheFilterIsNotReached() {
    m_ui.press(Qt::Key_K, Qt::ControlModifier);
    m_ui.press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(m_ui.named("paletteField")->hasActiveFocus());
}

void tst_keyboardjobs::whereThePaletteLeadsTheKeysAreForThePage_data() {
    QTest::addColumn<QString>("query");
    QTest::newRow("a project") << QStringLiteral("film");
    QTest::newRow("a folder") << QStringLiteral("drafts");
    QTest::newRow("a file") << QStringLiteral("logo");
    QTest::newRow("a page") << QStringLiteral("starred");
}

void tst_keyboardjobs::whereThePaletteLeadsTheKeysAreForThePage() {
    QFETCH(QString, query);
    const Place before = m_ui.library().place();
    goElsewhere();
    m_ui.press(Qt::Key_K, Qt::ControlModifier);
    m_ui.named("paletteField")->setProperty("text", query);
    const auto highlighted = [this] { return m_ui.ofType("PaletteRow") != nullptr; };
    QTRY_VERIFY(highlighted());
    m_ui.settle();
    m_ui.press(Qt::Key_Return);
    QVERIFY(!m_ui.library().paletteOpen());
    QTRY_VERIFY(m_ui.library().place() != before);
    QTRY_VERIFY(isAtTheTiles());
    m_ui.settle();
    QVERIFY(isAtTheTiles());
}

void tst_keyboardjobs::aPaletteThatIsClosedGivesTheKeysBack() {
    goElsewhere();
    const QQuickItem* const before = m_ui.focused();
    m_ui.press(Qt::Key_K, Qt::ControlModifier);
    m_ui.press(Qt::Key_Escape);
    QCOMPARE(m_ui.focused(), before);
}

QTEST_MAIN(tst_keyboardjobs)
#include "tst_keyboardjobs.moc"
