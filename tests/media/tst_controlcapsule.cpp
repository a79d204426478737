// What plays a film or a sound, used as a person does.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomPiece.h"
#include "media/player/PictureInPicture.h"

#include <QtTest>

using namespace lumbra;

namespace {

constexpr char capsule[] =
    "ControlCapsule { objectName: 'capsule'; y: 400; width: 1100; room: parent ? parent.room : null }";
constexpr char narrowCapsule[] =
    "ControlCapsule { objectName: 'capsule'; y: 400; width: 560; room: parent ? parent.room : null }";
struct Control {
    const char* name;
    const char* hint;
    const char* symbol;
    bool filmOnly;
    bool inCompactForm;
};

constexpr Control controls[] = {
    {"play", "Play (Space)", "play.fill", false, true},
    {"back", "Back 5 seconds (←)", "gobackward.5", false, false},
    {"ahead", "Ahead 5 seconds (→)", "goforward.5", false, false},
    {"previousFrame", "Previous frame (,)", "backward.frame.fill", true, false},
    {"nextFrame", "Next frame (.)", "forward.frame.fill", true, false},
    {"speed", "Playback speed", "", false, true},
    {"loop", "Loop", "repeat", false, true},
    {"mute", "Mute (M)", "speaker.wave.2.fill", false, true},
    {"pip", "Picture in picture", "pip.enter", true, true},
    {"fullScreen", "Full screen (F)", "arrow.up.left.and.arrow.down.right", true, true},
};

} // namespace

class tst_ControlCapsule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    // The capsule

    void theControlsStandFromLeftToRight() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        double last = 0;
        for (const char* name : {"play", "back", "ahead", "previousFrame", "nextFrame", "timecode", "badge", "speed",
                                 "loop", "mute", "volume", "pip", "fullScreen"}) {
            if (qstrcmp(name, "badge") == 0)
                continue; // not while nothing is shuttled
            QVERIFY2(shown.sees(name), name);
            QVERIFY2(shown.item(name)->x() > last || qstrcmp(name, "play") == 0, name);
            last = shown.item(name)->x();
        }
    }

    void eachControlHasItsHintAndItsName() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        for (const Control& control : controls) {
            const QString hint = shown->value(control.name, "hint").toString();
            QCOMPARE(hint.isEmpty() ? shown->value(control.name, "text").toString() : hint,
                     QString::fromUtf8(control.hint));
            QCOMPARE(shown->value(control.name, "symbol").toString(), QString::fromLatin1(control.symbol));
            QAccessibleInterface* const accessible = shown.accessible(control.name);
            QVERIFY2(accessible, control.name);
            QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), control.name);
            QVERIFY2(accessible->state().focusable, control.name);
        }
        QCOMPARE(shown->value("volume", "from").toDouble(), 0.0);
        QCOMPARE(shown->value("volume", "to").toDouble(), 1.0);
        QCOMPARE(shown.item("scrubber")->height(), 46.0);
        QCOMPARE(shown.accessible("volume")->role(), QAccessible::Slider);
        QCOMPARE(shown.accessible("scrubber")->role(), QAccessible::Slider);
    }

    void theCompactFormLeavesOutWhatHasAKey() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, narrowCapsule);
        QVERIFY(!shown->value("capsule", "wide").toBool());
        for (const Control& control : controls)
            QCOMPARE(shown.sees(control.name), control.inCompactForm);
        QVERIFY(!shown.sees("volume"));
        QVERIFY(shown.sees("timecode"));
        // And all of it finds room.
        const QQuickItem* const last = shown.item("fullScreen");
        QVERIFY(last->mapRectToItem(shown.item("capsule"), last->boundingRect()).right() <= 560 - 8);
    }

    void aSoundHasNoControlsOfPictures() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        RoomPiece shown(in, capsule);
        for (const Control& control : controls)
            QCOMPARE(shown.sees(control.name), !control.filmOnly);
        QVERIFY(shown.sees("volume"));
    }

    void noFormChangesWhileAFilmIsShuttled() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        const double width = shown->value("capsule", "wideWidth").toDouble();
        in.engine().shuttle(1);
        in.engine().shuttle(1);
        QTRY_VERIFY(shown.sees("badge"));
        QCOMPARE(shown->value("badge", "text").toString(), QStringLiteral("2× \u25B6\uFE0E"));
        QCOMPARE(shown->value("capsule", "wideWidth").toDouble(), width);
        in.engine().shuttle(0);
        QVERIFY(!shown.sees("badge"));
    }

    void playAndPause() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown->click("play");
        QVERIFY(in.engine().isPlaying());
        QCOMPARE(shown->value("play", "hint").toString(), QStringLiteral("Pause (Space)"));
        QCOMPARE(shown->value("play", "symbol").toString(), QStringLiteral("pause.fill"));
        shown->click("play");
        QVERIFY(!in.engine().isPlaying());
        QCOMPARE(shown->value("play", "symbol").toString(), QStringLiteral("play.fill"));
    }

    void fiveSecondsBackAndAhead() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown->click("ahead");
        QVERIFY(std::abs(in.engine().time() - 5) < 0.01);
        shown->click("back");
        QCOMPARE(in.engine().time(), 0.0);
        shown->click("back");
        QCOMPARE(in.engine().time(), 0.0);
    }

    void frameByFrame() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        in.engine().seek(1, true);
        QTRY_VERIFY(in.engine().isStanding());
        const double before = in.engine().time();
        shown->click("nextFrame");
        QTRY_VERIFY(in.engine().time() > before + 0.01);
        QTRY_VERIFY(in.engine().isStanding());
        shown->click("previousFrame");
        QTRY_VERIFY(in.engine().time() < before + 0.01);
        QVERIFY(!in.engine().isPlaying());
    }

    void theSpeedIsChosenInAMenu() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        QCOMPARE(shown->value("speed", "text").toString(), QStringLiteral("1×"));
        for (const double speed : {1.25, 2.0, 0.5}) {
            const QByteArray item = "speed" + QByteArray::number(speed);
            shown->click("speed");
            QTRY_VERIFY(shown->value("speeds", "opened").toBool());
            QVERIFY(!shown->value(item, "checked").toBool());
            shown->click(item);
            QTRY_VERIFY(!shown->value("speeds", "visible").toBool());
            QCOMPARE(in.engine().speed(), speed);
            QCOMPARE(shown->value("speed", "text").toString(), QStringLiteral("%1×").arg(speed));
        }
        shown->click("speed");
        QTRY_VERIFY(shown->value("speeds", "opened").toBool());
        for (const char* item : {"speed0.5", "speed1", "speed1.25", "speed1.5", "speed2"})
            QCOMPARE(shown->value(item, "checked").toBool(), qstrcmp(item, "speed0.5") == 0);
        // Over the button, whatever lies below.
        QVERIFY(shown->centreOf("speed2").y() < shown->centreOf("speed").y());
    }

    void loopIsOnOrOff() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown->click("loop");
        QVERIFY(in.engine().loop());
        QCOMPARE(shown->value("loop", "text").toString(), QStringLiteral("Loop is on"));
        QVERIFY(shown.accessible("loop")->state().checked);
        shown->click("loop");
        QVERIFY(!in.engine().loop());
        QCOMPARE(shown->value("loop", "text").toString(), QStringLiteral("Loop"));
    }

    void muteAndVolume() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown->click("mute");
        QVERIFY(in.engine().muted());
        QCOMPARE(shown->value("mute", "symbol").toString(), QStringLiteral("speaker.slash.fill"));
        shown->click("mute");
        QVERIFY(!in.engine().muted());
        shown->click("volume"); // its middle
        QVERIFY(std::abs(in.engine().volume() - 0.5) < 0.05);
        QCOMPARE(shown->value("mute", "symbol").toString(), QStringLiteral("speaker.wave.2.fill"));
        in.engine().setVolume(0);
        QCOMPARE(shown->value("volume", "value").toDouble(), 0.0);
        QCOMPARE(shown->value("mute", "symbol").toString(), QStringLiteral("speaker.slash.fill"));
    }

    void fullScreenAndBack() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown->click("fullScreen");
        QTRY_COMPARE((*shown)->visibility(), QWindow::FullScreen);
        shown->click("fullScreen");
        QTRY_VERIFY((*shown)->visibility() != QWindow::FullScreen);
    }

    void theSmallWindowOpensAndClosesWhereThereCanBeOne() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, wholeRoom);
        const PictureInPicture* const pip = in.engine().pip();
        QCOMPARE(shown->value("pip", "enabled").toBool(), pip != nullptr);
        if (!pip)
            QSKIP("there is no OpenGL without a display");
        shown->click("pip");
        QTRY_VERIFY(pip->isActive());
        QVERIFY(shown.accessible("pip")->state().checked);
        shown->click("pip");
        QTRY_VERIFY(!pip->isActive());
        QVERIFY(!shown.accessible("pip")->state().checked);
    }

    void theTimecodeTellsTimeAndDuration() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        in.engine().seek(2.5, true);
        QCOMPARE(shown->value("timecode", "time").toString(), QStringLiteral("0:02.50"));
        QCOMPARE(shown->value("timecode", "duration").toString(), QStringLiteral("0:10.00"));
    }

    void whatMissesAControlDoesNotReachTheStage() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        RoomPiece shown(in, "property int presses: 0\n"
                            "MouseArea { anchors.fill: parent; onPressed: ++parent.presses }\n"
                            "ControlCapsule { objectName: 'capsule'; y: 400; room: parent ? parent.room : null }");
        const QPoint corner = shown.item("capsule")->mapToScene(QPointF(6, 60)).toPoint();
        QTest::mouseClick(shown->window(), Qt::LeftButton, {}, corner);
        QCOMPARE(shown->root()->property("presses").toInt(), 0);
        QTest::mouseClick(shown->window(), Qt::LeftButton, {}, QPoint(20, 20));
        QCOMPARE(shown->root()->property("presses").toInt(), 1);
    }

    void tabReachesEveryControlAndItsFocusShows() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        QStringList reached;
        for (int i = 0; i < 12; ++i) {
            shown->press(Qt::Key_Tab);
            QQuickItem* const focused = (*shown)->activeFocusItem();
            reached << focused->objectName();
            if (!focused->property("visualFocus").isNull())
                QVERIFY2(focused->property("visualFocus").toBool(), qPrintable(focused->objectName()));
        }
        QStringList all{QStringLiteral("scrubber"), QStringLiteral("volume")};
        for (const Control& control : controls)
            if (qstrcmp(control.name, "pip") != 0) // which can't be used here
                all << QString::fromLatin1(control.name);
        for (const QString& name : std::as_const(all))
            QVERIFY2(reached.contains(name),
                     qPrintable(QStringLiteral("%1 is not among %2").arg(name, reached.join(u' '))));
    }

    void controlsAreUsedByKey() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        shown.item("loop")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_Return);
        QVERIFY(in.engine().loop());
        shown.item("volume")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_Left);
        QVERIFY(in.engine().volume() < 1);
        shown.item("scrubber")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_End);
        QCOMPARE(in.engine().time(), in.engine().duration());
        shown->press(Qt::Key_Home);
        QCOMPARE(in.engine().time(), 0.0);
    }

    // In the room

    void inTheSmallestWindowThePanelsLeaveTheCapsuleAlone_data() {
        QTest::addColumn<bool>("drawer");
        QTest::newRow("the queue") << false;
        QTest::newRow("the drawer, which pushes the queue out") << true;
    }
    void inTheSmallestWindowThePanelsLeaveTheCapsuleAlone() {
        QFETCH(bool, drawer);
        OpenRoom in(m_home);
        in.clip("h264.mp4");
        in.open(in.clip("long.mp4"));
        in.settle();
        in.room().setShowInfo(drawer);
        RoomPiece shown(in, wholeRoom, QSize(900, 540));
        const auto place = [&](const char* name) {
            const QQuickItem* const item = shown.item(name);
            return item->mapRectToScene(item->boundingRect());
        };
        const QRectF fullScreen = place("fullScreen"), play = place("play");
        QVERIFY(play.left() >= 4);
        QVERIFY(fullScreen.right() < place(drawer ? "drawerStar" : "queue").left());
        // What is left is shared out evenly beside and between the two.
        const QQuickItem* const capsule = shown.item("scrubber")->parentItem();
        const QQuickItem* const panel = shown.item(drawer ? "drawer" : "upNext");
        const QRectF bed = capsule->mapRectToScene(capsule->boundingRect());
        const QRectF beside = panel->mapRectToScene(panel->boundingRect());
        QCOMPARE(bed.width(), 560.0);
        QCOMPARE(beside.width(), drawer ? 320.0 : 316.0);
        for (const double gap : {bed.left(), beside.left() - bed.right(), 900 - beside.right()})
            QVERIFY2(gap >= 6 && gap <= 8, QByteArray::number(gap));
        QCOMPARE(shown->root()->findChild<QObject*>(QStringLiteral("queue")) != nullptr, !drawer);
    }

    void theKeysOfTheRoomWorkWhileAControlHasTheFocus() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        RoomPiece shown(in, wholeRoom);
        QTRY_VERIFY(in.room().focused());
        shown.item("loop")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_Right);
        QVERIFY(std::abs(in.engine().time() - 5) < 0.01);
        shown->press(Qt::Key_M);
        QVERIFY(in.engine().muted());
        shown->press(Qt::Key_Space); // the control's own
        QVERIFY(in.engine().loop());
        QVERIFY(!in.engine().isPlaying());
        shown->press(Qt::Key_Escape);
        QVERIFY(!in.room().isOpen());
    }

    void aMenuGoesWithTheControls() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        RoomPiece shown(in, wholeRoom);
        shown->click("speed");
        QTRY_VERIFY(shown->value("speeds", "opened").toBool());
        in.engine().play();
        QTRY_VERIFY(!in.room().chrome());
        QTRY_VERIFY(!shown->value("speeds", "visible").toBool());
    }

private:
    TestHome m_home;
};

int main(int argc, char** argv) {
    return runWithPlayer<tst_ControlCapsule>(argc, argv);
}
#include "tst_controlcapsule.moc"
