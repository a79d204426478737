// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteFixture.h"

#include <QFile>

using namespace lumbra;

class tst_palettekeys : public QObject, private PaletteFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { make(); }
    void cleanup() { takeDown(); }

    void theArrowKeysStopAtTheEnds();
    void aNewQueryHighlightsTheFirstRow();
    void theHighlightStaysOnItsRowWhenOthersCome();
    void returnGoesToAProject();
    void returnGoesToAGroup();
    void returnGoesToAFolder();
    void returnRevealsAFile();
    void returnRunsAnAction();
    void returnPlaysOnlyWithControlAlone_data();
    void returnPlaysOnlyWithControlAlone();
    void playingTakesTheFilesOfTheFolderNewestFirst();
    void anImageIsPlayedToo();
    void controlWithReturnOnAProjectGoesThere();
    void returnOnAnEmptyListLeavesThePaletteOpen();
    void escapeCloses();
    void otherKeysAreTheFields();
    void aRowIsOpenedByItsNumber();
    void aRowThatIsNotThereOpensNothing();
    void aFileThatHasGoneOpensWhereItWas();
};

void tst_palettekeys::theArrowKeysStopAtTheEnds() {
    open();
    QCOMPARE(m_palette->results()->rowCount(), 5); // two projects, three actions
    QVERIFY(m_palette->press(Qt::Key_Up, {}));
    QCOMPARE(m_palette->highlighted(), 0);
    for (int presses = 0; presses < 4; ++presses)
        m_palette->press(Qt::Key_Down, {});
    QCOMPARE(m_palette->highlighted(), 4);
    m_palette->press(Qt::Key_Down, {});
    QCOMPARE(m_palette->highlighted(), 4);
    m_palette->press(Qt::Key_Up, {});
    QCOMPARE(m_palette->highlighted(), 3);
}

void tst_palettekeys::aNewQueryHighlightsTheFirstRow() {
    open();
    m_palette->press(Qt::Key_Down, {});
    m_palette->press(Qt::Key_Down, {});
    type("i");
    QCOMPARE(m_palette->highlighted(), 0);
}

void tst_palettekeys::theHighlightStaysOnItsRowWhenOthersCome() {
    const Location found = file("site/b.png");
    open();
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString&, int) {
                                    answer.acquire();
                                    return QStringList{found.toString()};
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("go to");
    QTRY_COMPARE(rows(), strings({"Actions: Go to Recent, Go to Starred"}));
    m_palette->press(Qt::Key_Down, {});
    answer.release();
    QTRY_COMPARE(rows(), strings({"Files: b.png", "Actions: Go to Recent, Go to Starred"}));
    QCOMPARE(m_palette->highlighted(), 2);
}

void tst_palettekeys::returnGoesToAProject() {
    open();
    highlight("site");
    m_palette->press(Qt::Key_Return, {});
    QVERIFY(!m_library->paletteOpen());
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_palettekeys::returnGoesToAGroup() {
    open();
    const ProjectGroup zoo = m_library->newGroup(QStringLiteral("Zoo"), strings({"site"}));
    type("zoo");
    m_palette->press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_library->place(), Place::group(zoo.id));
}

void tst_palettekeys::returnGoesToAFolder() {
    file("site/renders/final/a.png");
    open();
    type("final");
    highlight("final");
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site/renders/final")));
}

void tst_palettekeys::returnRevealsAFile() {
    const Location demo = file("site/renders/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site/renders")));
    QCOMPARE(m_library->pendingReveal(), std::optional(demo));
    QVERIFY(!m_library->playing());
}

void tst_palettekeys::returnRunsAnAction() {
    open();
    highlight("Go to Starred");
    m_palette->press(Qt::Key_Return, {});
    QVERIFY(!m_library->paletteOpen());
    QCOMPARE(m_library->place(), Place::starred());
}

void tst_palettekeys::returnPlaysOnlyWithControlAlone_data() {
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("plays");
    QTest::newRow("none") << int(Qt::NoModifier) << false;
    QTest::newRow("control") << int(Qt::ControlModifier) << true;
    QTest::newRow("control, on the keypad") << int(Qt::ControlModifier | Qt::KeypadModifier) << true;
    QTest::newRow("control and shift") << int(Qt::ControlModifier | Qt::ShiftModifier) << false;
    QTest::newRow("alt") << int(Qt::AltModifier) << false;
    QTest::newRow("shift") << int(Qt::ShiftModifier) << false;
}

void tst_palettekeys::returnPlaysOnlyWithControlAlone() {
    QFETCH(int, modifiers);
    file("site/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, Qt::KeyboardModifiers(modifiers));
    QVERIFY(!m_library->paletteOpen());
    QTEST(m_library->playing().has_value(), "plays");
    QCOMPARE(m_library->pendingReveal().has_value(), !m_library->playing().has_value());
}

void tst_palettekeys::playingTakesTheFilesOfTheFolderNewestFirst() {
    file("site/renders/old.mp4", 1000);
    const Location demo = file("site/renders/demo.mp4", 2000);
    file("site/renders/new.png", 3000);
    file("site/renders/below/other.mp4", 4000);
    file("site/above.mp4", 5000);
    file("site/renders-2/beside.mp4", 6000);
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(m_library->playing());
    QCOMPARE(m_library->playing()->asset.url, demo);
    QStringList order;
    const Assets played = m_library->playing()->order;
    for (const Asset& asset : played)
        order.append(asset.url.name());
    QCOMPARE(order, strings({"new.png", "demo.mp4", "old.mp4"}));
}

void tst_palettekeys::anImageIsPlayedToo() {
    file("site/still.png");
    open();
    type("still");
    highlight("still.png");
    QCOMPARE(m_palette->results()->results()[0].hint(), QStringLiteral("↩"));
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(m_library->playing());
}

void tst_palettekeys::controlWithReturnOnAProjectGoesThere() {
    open();
    highlight("site");
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(m_library->place(), Place::folder(at("site")));
    QVERIFY(!m_library->playing());
}

void tst_palettekeys::returnOnAnEmptyListLeavesThePaletteOpen() {
    open();
    const Place place = m_library->place();
    type("zebra");
    QTRY_VERIFY(!m_palette->emptyText().isEmpty());
    m_palette->press(Qt::Key_Down, {});
    QVERIFY(m_palette->press(Qt::Key_Return, {}));
    QVERIFY(m_library->paletteOpen());
    QCOMPARE(m_library->place(), place);
}

void tst_palettekeys::escapeCloses() {
    open();
    type("film");
    QVERIFY(m_palette->press(Qt::Key_Escape, {}));
    QVERIFY(!m_library->paletteOpen());
}

void tst_palettekeys::otherKeysAreTheFields() {
    open();
    QVERIFY(!m_palette->press(Qt::Key_A, {}));
    QVERIFY(!m_palette->press(Qt::Key_Left, {}));
    QVERIFY(!m_palette->press(Qt::Key_Home, {}));
}

void tst_palettekeys::aRowIsOpenedByItsNumber() {
    open();
    m_palette->openRow(rowOf("site"));
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_palettekeys::aRowThatIsNotThereOpensNothing() {
    open();
    m_palette->openRow(-1);
    m_palette->openRow(99);
    QVERIFY(m_library->paletteOpen());
}

void tst_palettekeys::aFileThatHasGoneOpensWhereItWas() {
    const Location demo = file("site/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    QVERIFY(QFile::remove(demo.toString()));
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site")));
    QVERIFY(!m_library->lastError());
}

QTEST_MAIN(tst_palettekeys)
#include "tst_palettekeys.moc"
