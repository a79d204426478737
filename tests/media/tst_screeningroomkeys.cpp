// Each key of the screening room, pressed in a real window, with the player and without.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QtTest>

using namespace lumbra;

namespace {

QString text(const char* words) {
    return QString::fromUtf8(words);
}

// Three of a kind with the second on show, which stands at 6 seconds if it is a film.
struct Three {
    explicit Three(bool films) {
        const QList<const char*> order = films ? QList<const char*>{"p/a.mp4", "p/b.mp4", "p/c.mp4"}
                                               : QList<const char*>{"p/a.png", "p/b.png", "p/c.png"};
        for (const char* name : order)
            films ? room.clip(name) : room.picture(name);
        room.open(order.at(1), order);
        room.preferences.setValue(QStringLiteral("playerQueue"), false);
        window = std::make_unique<RoomWindow>(room);
        if (films)
            room.standAt(6);
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) { window->window.press(key, modifiers); }
    ScreeningRoom& screening() const { return *room.room; }
    PlayerEngine& engine() const { return *room.room->engine(); }
    bool isClosed() const { return !room.library->playing(); }

    // The key reached whoever stands behind the room, and did nothing in it.
    bool passesOn(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const QString name = screening().name();
        const double time = engine().time();
        press(key, modifiers);
        return window->passed().contains(key) && !isClosed() && screening().name() == name && engine().time() == time
               && !engine().isPlaying() && !engine().muted() && !screening().isStarred();
    }

    Room room;
    std::unique_ptr<RoomWindow> window;
};

} // namespace

class tst_ScreeningRoomKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void escapeCloses_data() { bothKinds(); }
    void escapeCloses() {
        QFETCH(bool, films);
        Three three(films);
        three.press(Qt::Key_Escape);
        QVERIFY(three.isClosed());
        QTRY_COMPARE(three.window->window.root()->property("fades").toInt(), 1);
    }

    void upAndDownStep_data() { bothKinds(); }
    void upAndDownStep() {
        QFETCH(bool, films);
        Three three(films);
        three.press(Qt::Key_Down);
        QCOMPARE(three.screening().index(), 2);
        three.press(Qt::Key_Down);
        QCOMPARE(three.screening().index(), 2);
        three.press(Qt::Key_Up);
        three.press(Qt::Key_Up);
        QCOMPARE(three.screening().index(), 0);
        three.press(Qt::Key_Up);
        QCOMPARE(three.screening().index(), 0);
        QVERIFY(three.window->passed().isEmpty());
    }

    void leftAndRightSeekInAFilm() {
        Three three(true);
        three.press(Qt::Key_Left);
        QCOMPARE(three.engine().time(), 1.0);
        three.press(Qt::Key_Left);
        QCOMPARE(three.engine().time(), 0.0);
        three.press(Qt::Key_Right);
        QCOMPARE(three.engine().time(), 5.0);
        three.press(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(three.engine().time(), 6.0);
        three.press(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(three.engine().time(), 5.0);
        three.press(Qt::Key_Right);
        QCOMPARE(three.engine().time(), three.engine().duration());
        QCOMPARE(three.screening().index(), 1);
    }

    void leftAndRightStepAmongStills() {
        Three three(false);
        three.press(Qt::Key_Right);
        QCOMPARE(three.screening().index(), 2);
        three.press(Qt::Key_Left);
        QCOMPARE(three.screening().index(), 1);
        three.press(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(three.screening().index(), 0);
        three.press(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(three.screening().index(), 1);
    }

    void spacePlaysAndPausesAFilm() {
        Three three(true);
        three.press(Qt::Key_Space);
        QVERIFY(three.engine().isPlaying());
        three.press(Qt::Key_Space);
        QVERIFY(!three.engine().isPlaying());
        QVERIFY(!three.isClosed());
    }

    void spaceClosesAStill() {
        Three three(false);
        three.press(Qt::Key_Space);
        QVERIFY(three.isClosed());
    }

    void aHeldKeyClosesNothing() {
        Three three(false);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, text(" "), true);
        QCoreApplication::sendEvent(three.window->window.window(), &held);
        QVERIFY(!three.isClosed()); // it is the press that has opened the room
        QKeyEvent next(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(three.window->window.window(), &next);
        QCOMPARE(three.screening().index(), 2);
    }

    void controlCCopiesTheFile_data() { bothKinds(); }
    void controlCCopiesTheFile() {
        QFETCH(bool, films);
        Three three(films);
        QGuiApplication::clipboard()->clear();
        three.press(Qt::Key_C, Qt::ControlModifier);
        const auto urls = [] { return QGuiApplication::clipboard()->mimeData()->urls(); };
        QTRY_COMPARE(urls(), QList<QUrl>{three.screening().url()});
    }

    void sStars_data() { bothKinds(); }
    void sStars() {
        QFETCH(bool, films);
        Three three(films);
        three.press(Qt::Key_S);
        QTRY_VERIFY(three.screening().isStarred());
        three.press(Qt::Key_S, Qt::ShiftModifier);
        QTRY_VERIFY(!three.screening().isStarred());
    }

    void iOpensTheDrawer_data() { bothKinds(); }
    void iOpensTheDrawer() {
        QFETCH(bool, films);
        Three three(films);
        three.press(Qt::Key_I);
        QVERIFY(three.screening().showInfo());
        three.press(Qt::Key_I);
        QVERIFY(!three.screening().showInfo());
    }

    void fFillsTheScreen_data() { bothKinds(); }
    void fFillsTheScreen() {
        QFETCH(bool, films);
        Three three(films);
        QWindow* const window = three.window->window.window();
        three.press(Qt::Key_F);
        QTRY_VERIFY(window->windowStates().testFlag(Qt::WindowFullScreen));
        three.press(Qt::Key_F);
        QTRY_VERIFY(!window->windowStates().testFlag(Qt::WindowFullScreen));
    }

    void jAndKAndLShuttle() {
        Three three(true);
        three.press(Qt::Key_L);
        QVERIFY(three.engine().isPlaying());
        QCOMPARE(three.engine().shuttle(), 1.0);
        three.press(Qt::Key_L);
        QCOMPARE(three.engine().shuttle(), 2.0);
        three.press(Qt::Key_K);
        QVERIFY(!three.engine().isPlaying());
        QCOMPARE(three.engine().shuttle(), 1.0);
        three.press(Qt::Key_J);
        QCOMPARE(three.engine().shuttle(), -1.0);
        three.press(Qt::Key_K);
        QCOMPARE(three.engine().shuttle(), 1.0);
    }

    void commaAndFullStopStepByPictures() {
        Three three(true);
        three.press(Qt::Key_Space);
        three.press(Qt::Key_Comma);
        QVERIFY(!three.engine().isPlaying());
        QTRY_VERIFY(three.engine().isStanding());
        three.room.standAt(6);
        three.press(Qt::Key_Comma);
        QTRY_VERIFY(three.engine().time() < 6 && three.engine().time() > 5.9);
        const double before = three.engine().time();
        three.press(Qt::Key_Period);
        QTRY_VERIFY(three.engine().time() > before + 0.01 && three.engine().time() < before + 0.1);
    }

    void mMutes() {
        Three three(true);
        three.press(Qt::Key_M);
        QVERIFY(three.engine().muted());
        three.press(Qt::Key_M);
        QVERIFY(!three.engine().muted());
    }

    void digitsJump_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<double>("part");
        for (int digit = 0; digit <= 9; ++digit)
            QTest::newRow(qPrintable(QString::number(digit))) << Qt::Key_0 + digit << 0 << digit / 10.0;
        QTest::newRow("3 of the number pad") << int(Qt::Key_3) << int(Qt::KeypadModifier) << 0.3;
    }
    void digitsJump() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(double, part);
        Three three(true);
        three.press(key, Qt::KeyboardModifiers(modifiers));
        QVERIFY(std::abs(three.engine().time() - part * three.engine().duration()) < 0.002);
    }

    void theKeysOfThePlayerMeanNothingOnAStill_data() {
        QTest::addColumn<int>("key");
        for (const int key : {Qt::Key_J, Qt::Key_K, Qt::Key_L, Qt::Key_Comma, Qt::Key_Period, Qt::Key_M, Qt::Key_0,
                              Qt::Key_3, Qt::Key_9})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << key;
    }
    void theKeysOfThePlayerMeanNothingOnAStill() {
        QFETCH(int, key);
        Three three(false);
        QVERIFY(three.passesOn(key));
    }

    void whatIsForAMenuIsPassedOn_data() {
        QTest::addColumn<bool>("films");
        QTest::addColumn<int>("modifiers");
        for (const auto& [name, modifier] :
             {std::pair{"Alt", Qt::AltModifier}, {"Ctrl", Qt::ControlModifier}, {"Meta", Qt::MetaModifier}})
            for (const bool films : {false, true})
                QTest::newRow(qPrintable(text(name) + text(films ? " on a film" : " on a still")))
                    << films << int(modifier);
    }
    void whatIsForAMenuIsPassedOn() {
        QFETCH(bool, films);
        QFETCH(int, modifiers);
        Three three(films);
        for (const int key : {Qt::Key_S, Qt::Key_I, Qt::Key_F, Qt::Key_J, Qt::Key_M, Qt::Key_3})
            QVERIFY(three.passesOn(key, Qt::KeyboardModifiers(modifiers)));
    }

    void otherKeysArePassedOn() {
        Three three(true);
        for (const int key : {Qt::Key_X, Qt::Key_Return, Qt::Key_Delete, Qt::Key_C})
            QVERIFY(three.passesOn(key));
    }

    void anyKeyShowsTheControls() {
        Three three(true);
        three.press(Qt::Key_Space);
        three.room.now = three.room.now + 3;
        QTRY_VERIFY(!three.screening().chrome());
        three.press(Qt::Key_X);
        QVERIFY(three.screening().chrome());
        QTRY_COMPARE(three.window->window.value("roomBack", "visible").toBool(), true);
    }

private:
    static void bothKinds() {
        QTest::addColumn<bool>("films");
        QTest::newRow("a film") << true;
        QTest::newRow("a still") << false;
    }
};

QTEST_MAIN(tst_ScreeningRoomKeys)
#include "tst_screeningroomkeys.moc"
