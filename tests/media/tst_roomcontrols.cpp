// What floats in the screening room, used as a person does: by the pointer, by the keys, by assistive technology.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenRoom.h"
#include "library/Actions.h"
#include "support/QmlWindow.h"
#include "support/Strings.h"
#include "support/TestPanels.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

// A window with a view of the room in it.
class Shown {
public:
    Shown(OpenRoom& in, const char* body, const QSize& size = QSize(1200, 600))
        : m_window((QByteArray("property var room\n") + body).constData(), "import Lumbra.Media\n",
                   {{QStringLiteral("room"), QVariant::fromValue<QObject*>(&in.room())}}, size) {
        QTest::mouseMove(m_window.window(), QPoint(1, 1));
    }

    QmlWindow* operator->() { return &m_window; }
    QmlWindow& operator*() { return m_window; }

    QQuickItem* item(const char* name) { return m_window.find<QQuickItem>(name); }
    bool sees(const char* name) { return item(name)->isVisible(); }

    QAccessibleInterface* accessible(const char* name) {
        return QAccessible::queryAccessibleInterface(m_window.find(name));
    }

private:
    QmlWindow m_window;
};

constexpr char capsule[] =
    "ControlCapsule { objectName: 'capsule'; y: 400; width: 1100; room: parent ? parent.room : null }";
constexpr char narrowCapsule[] =
    "ControlCapsule { objectName: 'capsule'; y: 400; width: 560; room: parent ? parent.room : null }";
constexpr char drawer[] =
    "InfoDrawerView { objectName: 'drawer'; height: parent ? parent.height : 0; room: parent ? parent.room : null }";
constexpr char queue[] =
    "UpNextView { objectName: 'upNext'; height: parent ? parent.height : 0; room: parent ? parent.room : null }";

constexpr char wholeRoom[] = "ScreeningRoomView { anchors.fill: parent; room: parent ? parent.room : null }";

struct Control {
    const char* name;
    const char* hint;
    bool filmOnly;
    bool inCompactForm;
};

constexpr Control controls[] = {
    {"play", "Play (Space)", false, true},
    {"back", "Back 5 seconds (←)", false, false},
    {"ahead", "Ahead 5 seconds (→)", false, false},
    {"previousFrame", "Previous frame (,)", true, false},
    {"nextFrame", "Next frame (.)", true, false},
    {"speed", "Playback speed", false, true},
    {"loop", "Loop", false, true},
    {"mute", "Mute (M)", false, true},
    {"pip", "Picture in picture", true, true},
    {"fullScreen", "Full screen (F)", true, true},
};

} // namespace

class tst_RoomControls : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    // The capsule

    void theControlsStandFromLeftToRight() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
        for (const Control& control : controls) {
            const QString hint = shown->value(control.name, "hint").toString();
            QCOMPARE(hint.isEmpty() ? shown->value(control.name, "text").toString() : hint,
                     QString::fromUtf8(control.hint));
            QAccessibleInterface* const accessible = shown.accessible(control.name);
            QVERIFY2(accessible, control.name);
            QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), control.name);
            QVERIFY2(accessible->state().focusable, control.name);
        }
        QCOMPARE(shown.accessible("volume")->role(), QAccessible::Slider);
        QCOMPARE(shown.accessible("scrubber")->role(), QAccessible::Slider);
    }

    void theCompactFormLeavesOutWhatHasAKey() {
        OpenRoom in(m_home);
        Shown shown = film(in, narrowCapsule);
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
        Shown shown(in, capsule);
        for (const Control& control : controls)
            QCOMPARE(shown.sees(control.name), !control.filmOnly);
        QVERIFY(shown.sees("volume"));
    }

    void noFormChangesWhileAFilmIsShuttled() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
        shown->click("ahead");
        QVERIFY(std::abs(in.engine().time() - 5) < 0.01);
        shown->click("back");
        QCOMPARE(in.engine().time(), 0.0);
        shown->click("back");
        QCOMPARE(in.engine().time(), 0.0);
    }

    void frameByFrame() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
        shown->click("fullScreen");
        QTRY_COMPARE((*shown)->visibility(), QWindow::FullScreen);
        shown->click("fullScreen");
        QTRY_VERIFY((*shown)->visibility() != QWindow::FullScreen);
    }

    void theSmallWindowIsOfferedWhereThereCanBeOne() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
        QCOMPARE(shown->value("pip", "enabled").toBool(), in.engine().pip() != nullptr);
    }

    void theTimecodeTellsTimeAndDuration() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
        in.engine().seek(2.5, true);
        QCOMPARE(shown->value("timecode", "time").toString(), QStringLiteral("0:02.50"));
        QCOMPARE(shown->value("timecode", "duration").toString(), QStringLiteral("0:10.00"));
    }

    void whatMissesAControlDoesNotReachTheStage() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        Shown shown(in, "property int presses: 0\n"
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
        Shown shown = film(in, capsule);
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
        Shown shown = film(in, capsule);
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

    // The scrubber

    void aDragAlongTheTrackMovesThePlayer() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
        in.engine().play();
        const QQuickItem* const track = shown.item("track");
        const auto at = [&](double part) {
            return track->mapToScene(QPointF(track->width() * part, track->height() / 2)).toPoint();
        };
        QTest::mousePress(shown->window(), Qt::LeftButton, {}, at(0.25));
        QVERIFY(!in.engine().isPlaying());
        const auto playhead = [&] { return (shown.item("playhead")->x() + 2) / track->width(); };
        QVERIFY(std::abs(playhead() - 0.25) < 0.002);
        QTest::mouseMove(shown->window(), at(0.5));
        QTRY_VERIFY(std::abs(playhead() - 0.5) < 0.002);
        QTest::mouseMove(shown->window(), at(1.05)); // beyond the end of the track
        QTRY_VERIFY(playhead() > 0.99);
        QTest::mouseMove(shown->window(), at(0.3));
        QTest::mouseRelease(shown->window(), Qt::LeftButton, {}, at(0.3));
        QVERIFY(in.engine().isPlaying());
        QTRY_VERIFY(in.engine().time() > 3.05 && in.engine().time() < 6);
    }

    void theCardStandsOverThePointer() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
        const QQuickItem* const track = shown.item("track");
        QVERIFY(!shown.sees("card"));
        QTest::mouseMove(shown->window(), track->mapToScene(QPointF(track->width() / 2, 20)).toPoint());
        QTRY_VERIFY(shown.sees("card"));
        const QQuickItem* const card = shown.item("card");
        QCOMPARE(card->width(), 192.0);
        QVERIFY(std::abs(card->x() + 96 - track->width() / 2) <= 1);
        QCOMPARE(card->y(), -(192.0 * 9 / 16 + 44));
        QCOMPARE(shown->value("hoverTime", "text").toString().left(3), QStringLiteral("0:0"));
        QTRY_VERIFY_WITH_TIMEOUT(!shown->value("preview", "image").value<QImage>().isNull(), 20'000);
        QTest::mouseMove(shown->window(), QPoint(5, 5));
        QTRY_VERIFY(!shown.sees("card"));
    }

    void aSoundHasNoCard() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        Shown shown(in, capsule);
        QTest::mouseMove(shown->window(), shown->centreOf("track"));
        QTest::qWait(50);
        QVERIFY(!shown.sees("card"));
    }

    void assistiveTechnologyMovesTheScrubber() {
        OpenRoom in(m_home);
        Shown shown = film(in, capsule);
        QAccessibleInterface* const accessible = shown.accessible("scrubber");
        QVERIFY(accessible->actionInterface());
        accessible->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QVERIFY(std::abs(in.engine().time() - 5) < 0.01);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
        QCOMPARE(in.engine().time(), 0.0);
    }

    // The stage of a sound

    void theSignBreathesOnlyWhileItPlays() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        Shown shown(in, "AudioStage { anchors.fill: parent; room: parent ? parent.room : null }");
        QVERIFY(!shown->value("breath", "running").toBool());
        in.engine().play();
        QTRY_VERIFY(shown->value("circle", "scale").toDouble() > 1.01);
        in.engine().pause();
        QTRY_COMPARE(shown->value("circle", "scale").toDouble(), 1.0);
        QVERIFY(!shown->value("breath", "running").toBool());
    }

    void withReducedMotionNothingBreathes() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        Shown shown(in, "AudioStage { anchors.fill: parent; room: parent ? parent.room : null }");
        Look::setAppearance(shown->engine(), false, true);
        in.engine().play();
        QVERIFY(!shown->value("breath", "running").toBool());
        QCOMPARE(shown->value("circle", "scale").toDouble(), 1.0);
    }

    // The queue

    void theQueueTellsWhereItStands() {
        OpenRoom in(m_home);
        in.file("a.txt");
        const Location second = in.file("b.txt");
        in.file("c.txt");
        in.open(second);
        Shown shown(in, queue);
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("2 of 3"));
        QVERIFY(shown->value("row1", "playing").toBool());
        QVERIFY(!shown->value("row0", "playing").toBool());
        QAccessibleInterface* const accessible = shown.accessible("row1");
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("b.txt"));
        QVERIFY(accessible->text(QAccessible::Description).contains(u"Playing"));
        QVERIFY(accessible->state().selected);
        QCOMPARE(accessible->role(), QAccessible::ListItem);
    }

    void aClickPicksARow() {
        OpenRoom in(m_home);
        const Location first = in.file("a.txt");
        in.file("b.txt");
        const Location third = in.file("c.txt");
        in.open(first);
        Shown shown(in, queue);
        shown->click("row2");
        QCOMPARE(in.shown(), third);
        QTRY_VERIFY(shown->value("row2", "playing").toBool());
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("3 of 3"));
        QCOMPARE(in.library().playing()->order.size(), 3);
    }

    void theSwitchDecidesWhetherTheNextPlays() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        Shown shown(in, queue);
        QVERIFY(shown->value("autoplay", "checked").toBool());
        shown->click("autoplay");
        QVERIFY(!in.room().autoplayNext());
        QVERIFY(!shown.accessible("autoplay")->state().checked);
        in.room().setAutoplayNext(true);
        QVERIFY(shown->value("autoplay", "checked").toBool());
    }

    void aTimedRowTellsItsDurationAndOthersDoNot() {
        OpenRoom in(m_home);
        in.clip("long.mp4");
        in.open(in.file("a.txt"));
        Shown shown(in, queue);
        QTRY_VERIFY_WITH_TIMEOUT(
            shown.accessible("row0")->text(QAccessible::Description).contains(QStringLiteral("0:10")), 20'000);
        QCOMPARE(shown.accessible("row1")->text(QAccessible::Description), QStringLiteral("Playing"));
    }

    void aStarShowsInItsRow() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        in.open(file);
        Shown shown(in, queue);
        QVERIFY(!shown->value("row0", "starred").toBool());
        in.library().toggleStar({file});
        QTRY_VERIFY(shown->value("row0", "starred").toBool());
    }

    void ofAHundredThousandFilesAScreenfulIsMade() {
        OpenRoom in(m_home);
        const Location real = in.file("a.txt");
        Assets order;
        for (int i = 0; i < 100'000; ++i) {
            Asset asset = *Asset::read(real);
            asset.url = real.parent().child(QStringLiteral("%1.txt").arg(i));
            order.append(asset);
        }
        order[70'000] = *Asset::read(real);
        in.open(real, order);
        Shown shown(in, queue);
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("70001 of 100000"));
        QTRY_VERIFY(isInSight(shown, "row70000"));
        QVERIFY(madeRows(shown.item("queue")) < 40);
        for (const int row : {70'001, 3, 99'999}) {
            in.room().pick(order[row].url);
            const QByteArray name = "row" + QByteArray::number(row);
            QTRY_VERIFY(isInSight(shown, name.constData()));
            QVERIFY(madeRows(shown.item("queue")) < 60);
        }
    }

    // The drawer

    void theDrawerShowsItsFacts() {
        OpenRoom in(m_home);
        const Location file = in.clip("h264.mp4");
        in.open(file);
        Shown shown(in, drawer);
        QTRY_COMPARE_WITH_TIMEOUT(shown->value("Dimensions", "text").toString(), QStringLiteral("160 × 90"), 20'000);
        QCOMPARE(shown->value("Path", "text").toString(), file.toString());
        QVERIFY(shown->value("Path", "truncated").toBool());
    }

    void theDrawersActionsAreClicked() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        const Location next = in.file("b.txt");
        in.open(file);
        Shown shown(in, drawer);
        TestPanels panels;
        Actions::usePanels(&panels);
        shown->click("action3");
        QCOMPARE(QGuiApplication::clipboard()->text(), file.toString());
        shown->click("action0");
        QVERIFY(in.library().toast());
        shown->click("action1");
        QCOMPARE(panels.asked, QStringLiteral("save"));
        shown->click("action5");
        QCOMPARE(panels.button, QStringLiteral("Move Here"));
        shown->click("drawerStar");
        QTRY_VERIFY(in.room().isStarred());
        QVERIFY(shown.accessible("drawerStar")->state().checked);
        shown->click("action6");
        QCOMPARE(in.shown(), next);
        QTRY_VERIFY(!file.exists());
        in.room().setShowInfo(true);
        shown->click("drawerClose");
        QVERIFY(!in.room().showInfo());
        Actions::usePanels(nullptr);
    }

    void theDrawersActionsAreReachedByKey() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        in.open(file);
        Shown shown(in, drawer, QSize(400, 300)); // lower than the drawer's content
        QStringList reached;
        for (int i = 0; i < 9; ++i) {
            shown->press(Qt::Key_Tab);
            reached << (*shown)->activeFocusItem()->objectName();
            QVERIFY2(isWithin(shown.item("drawer"), (*shown)->activeFocusItem()), qPrintable(reached.last()));
        }
        QCOMPARE(reached, strings({"drawerStar", "drawerClose", "action0", "action1", "action2", "action3", "action4",
                                   "action5", "action6"}));
        shown.item("action3")->forceActiveFocus(Qt::TabFocusReason);
        QGuiApplication::clipboard()->clear();
        shown->press(Qt::Key_Return);
        QCOMPARE(QGuiApplication::clipboard()->text(), file.toString());
    }

    // The keys

    void theKeysAreThoseOfTheKind() {
        OpenRoom in(m_home);
        const Location film = in.clip("h264.mp4");
        in.file("a.txt");
        in.open(film);
        Shown shown(in, "KeyHints { objectName: 'hints'; room: parent ? parent.room : null }");
        QTRY_COMPARE(shown->value("hints", "hints").toList().size(), 8);
        QTRY_VERIFY(shown->value("hints", "inOneLine").toBool());
        const double oneLine = shown.item("hints")->implicitHeight();
        shown->find("hints")->setProperty("widest", 400);
        QTRY_VERIFY(shown.item("hints")->implicitHeight() > oneLine);
        QVERIFY(shown.item("hints")->implicitWidth() <= 400);
        in.room().go(1);
        QTRY_COMPARE(shown->value("hints", "hints").toList().size(), 4);
        QTRY_VERIFY(shown->value("hints", "inOneLine").toBool());
    }

    // All of them in the room

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
        Shown shown(in, wholeRoom, QSize(900, 540));
        const auto place = [&](const char* name) {
            const QQuickItem* const item = shown.item(name);
            return item->mapRectToScene(item->boundingRect());
        };
        const QRectF fullScreen = place("fullScreen"), play = place("play");
        QVERIFY(play.left() >= 4);
        QVERIFY(fullScreen.right() < place(drawer ? "drawerStar" : "queue").left());
        QCOMPARE(shown->root()->findChild<QObject*>(QStringLiteral("queue")) != nullptr, !drawer);
    }

    void aDrawerThatIsClosedByKeyLeavesTheKeysToTheRoom() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        in.room().setShowInfo(true);
        Shown shown(in, wholeRoom);
        QTRY_VERIFY(in.room().focused());
        shown.item("drawerClose")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_Return);
        QVERIFY(!in.room().showInfo());
        shown->press(Qt::Key_I);
        QVERIFY(in.room().showInfo());
    }

    void theKeysOfTheRoomWorkWhileAControlHasTheFocus() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        Shown shown(in, wholeRoom);
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
        Shown shown(in, wholeRoom);
        shown->click("speed");
        QTRY_VERIFY(shown->value("speeds", "opened").toBool());
        in.engine().play();
        QTRY_VERIFY_WITH_TIMEOUT(!in.room().chrome(), 6'000);
        QTRY_VERIFY(!shown->value("speeds", "visible").toBool());
    }

private:
    // A film of ten seconds that stands at its beginning, and a view of it.
    static Shown film(OpenRoom& in, const char* body) {
        in.open(in.clip("long.mp4"));
        in.settle();
        return Shown(in, body);
    }

    static bool isWithin(const QQuickItem* frame, const QQuickItem* item) {
        const QRectF place = item->mapRectToItem(frame, item->boundingRect());
        return frame->boundingRect().adjusted(-1, -1, 1, 1).contains(place);
    }

    static bool isInSight(Shown& shown, const char* row) {
        const auto* const list = shown.item("queue");
        const QList<QQuickItem*> rows = list->childItems().first()->childItems();
        for (const QQuickItem* item : rows)
            if (item->objectName() == QLatin1String(row) && item->isVisible())
                return isWithin(list, item);
        return false;
    }

    static qsizetype madeRows(const QQuickItem* list) { return list->childItems().first()->childItems().size(); }

    TestHome m_home;
};

QTEST_MAIN(tst_RoomControls)
#include "tst_roomcontrols.moc"
