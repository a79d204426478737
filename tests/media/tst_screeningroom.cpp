// What the screening room does, without a window: what is on show, the walk, the end of a film, the controls that hide,
// and files that are not what they were.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"
#include "core/PreferenceKeys.h"
#include "media/room/RoomDoor.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

namespace {

QString named(const char* name) {
    return QString::fromUtf8(name);
}

} // namespace

class tst_ScreeningRoom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // What is on show

    void aFilmIsLoadedAndPlays() {
        Room room;
        room.clip("p/a.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QCOMPARE(screening.engine()->url(), room.path("p/a.mp4"));
        QVERIFY(screening.engine()->isPlaying());
        QCOMPARE(screening.stage(), named("video"));
        QVERIFY(screening.stillImage().isNull());
        QTRY_VERIFY(screening.engine()->duration() > 0);
    }

    void anImageIsDecodedAndThePlayerStops() {
        Room room;
        room.clip("p/a.mp4");
        room.picture("p/b.png", Qt::blue, {640, 480});
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(screening.engine()->duration() > 0);
        screening.go(1);
        QVERIFY(screening.engine()->url().isEmpty());
        QVERIFY(!screening.engine()->isPlaying());
        QTRY_COMPARE(screening.stillImage().size(), QSize(267, 200)); // in a stage of 320 by 200
        QCOMPARE(screening.stillImage().pixelColor(5, 5), QColor(Qt::blue));
    }

    void aStillIsDecodedAgainForALargerStage() {
        Room room;
        room.picture("p/a.png", Qt::blue, {640, 480});
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        QTRY_COMPARE(screening.stillImage().width(), 267);
        screening.setStagePixels({1280, 960});
        QCOMPARE(screening.stillImage().width(), 267); // stands until then
        QTRY_COMPARE(screening.stillImage().size(), QSize(640, 480));
        QTRY_COMPARE(screening.pixelSize(), QSize(640, 480));
        screening.setStagePixels({320, 200});
        QCOMPARE(screening.stillImage().size(), QSize(640, 480));
    }

    void aBrokenImageLeavesTheStageEmpty() {
        Room room;
        room.home.file("Library/p/a.png", "no picture");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.png"});
        screening.go(1);
        QTRY_VERIFY(!screening.stillImage().isNull());
        screening.go(-1);
        QVERIFY(screening.stillImage().isNull());
        QTRY_VERIFY(screening.ambient().isNull());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.isOpen());
    }

    void thePictureOfTheFileBeforeNeverStaysOnShow() {
        Room room;
        room.picture("p/a.png", Qt::red);
        room.text("p/b.md");
        room.picture("p/c.png", Qt::blue);
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.md", "p/c.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        screening.go(1);
        QVERIFY(screening.stillImage().isNull());
        screening.go(1);
        QVERIFY(screening.stillImage().isNull() || screening.stillImage().pixelColor(1, 1) == QColor(Qt::blue));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QCOMPARE(screening.stillImage().pixelColor(1, 1), QColor(Qt::blue));
    }

    void theNextPictureIsThereWhenTheArrowIsPressed() {
        Room room;
        room.picture("p/a.png", Qt::red);
        room.picture("p/b.png", Qt::green);
        room.picture("p/c.png", Qt::blue);
        ScreeningRoom& screening = room.open("p/b.png", {"p/a.png", "p/b.png", "p/c.png"});
        const auto colourAfter = [&](int delta) {
            screening.go(delta);
            return screening.stillImage().isNull() ? QColor() : screening.stillImage().pixelColor(1, 1);
        };
        QTRY_COMPARE(screening.stillsHeld(), 3);
        QCOMPARE(colourAfter(1), QColor(Qt::blue));
        QCOMPARE(screening.stillsHeld(), 2); // the one before the last is out of reach
        QCOMPARE(colourAfter(-1), QColor(Qt::green));
        QTRY_COMPARE(screening.stillsHeld(), 3);
        QCOMPARE(colourAfter(-1), QColor(Qt::red));
    }

    void itLightsTheRoomWithWhatIsOnShow() {
        Room room;
        room.picture("p/a.png", Qt::red);
        room.clip("p/b.mp3", "tone.mp3");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.mp3"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        QCOMPARE(screening.ambient(), screening.stillImage());
        screening.go(1);
        QVERIFY(screening.ambient().isNull());
        QCOMPARE(screening.stage(), named("audio"));
    }

    void aStarBesideItTakesNothingOffTheStage() {
        Room room;
        room.picture("p/a.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        QSignalSpy changes(&screening, &ScreeningRoom::stillImageChanged);
        screening.toggleStar();
        QTRY_VERIFY(screening.isStarred());
        QCOMPARE(changes.count(), 0);
        QVERIFY(room.library->isStarred(room.path("p/a.png")));
    }

    // The walk

    void theArrowsStepThroughTheOrderAndNotAround() {
        Room room;
        for (const char* name : {"p/a.png", "p/b.png", "p/c.png"})
            room.picture(name);
        ScreeningRoom& screening = room.open("p/a.png", {"p/c.png", "p/a.png", "p/b.png"});
        QCOMPARE(screening.index(), 1);
        const Assets order = screening.order();
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
        QCOMPARE(room.library->playing()->asset.url, room.path("p/b.png"));
        QCOMPARE(room.library->playing()->order, order);
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
        screening.go(-2);
        QCOMPARE(screening.name(), named("c.png"));
        screening.go(-1);
        QCOMPARE(screening.name(), named("c.png"));
    }

    void anEmptyOrderHasNoNeighboursAndNoPosition() {
        Room room;
        room.picture("p/a.png");
        ScreeningRoom& screening = room.open("p/a.png", {});
        QCOMPARE(screening.index(), -1);
        screening.go(1);
        screening.go(-1);
        screening.advanceAfterEnd();
        QCOMPARE(screening.name(), named("a.png"));
        QVERIFY(!screening.meta().contains(named(" of ")));
    }

    void aFileOutsideTheOrderHasNoNeighbours() {
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/b.png"});
        screening.go(1);
        QCOMPARE(screening.name(), named("a.png"));
        screening.pick(room.path("p/b.png"));
        QCOMPARE(screening.name(), named("b.png"));
        QCOMPARE(screening.index(), 0);
        screening.pick(room.path("p/a.png"));
        QCOMPARE(screening.name(), named("b.png"));
    }

    void itTellsWhereItStands() {
        Room room;
        room.picture("p/renders/a.png", Qt::red, {64, 48});
        room.picture("p/renders/b.png");
        ScreeningRoom& screening = room.open("p/renders/a.png", {"p/renders/a.png", "p/renders/b.png"});
        QCOMPARE(screening.breadcrumb(), named("p / renders"));
        QTRY_VERIFY(screening.meta().startsWith(named("64 × 48 · ")));
        QVERIFY(screening.meta().endsWith(named(" · 1 of 2")));
        screening.go(1);
        QVERIFY(screening.meta().endsWith(named(" · 2 of 2")));
    }

    void aFilmTellsItsSizeAndLength() {
        Room room;
        room.clip("p/a.mp4", "h264.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(screening.meta().startsWith(named("160 × 90 · 0:02 · ")));
    }

    void aFileOfTheRootIsTheLibrarys() {
        Room room;
        room.picture("a.png");
        QCOMPARE(room.open("a.png", {}).breadcrumb(), named("Library"));
    }

    void anOrderOfAHundredThousandCostsNothingToWalk() {
        Room room;
        room.picture("p/a.png");
        room.openLibrary();
        Assets order;
        for (int i = 0; i < 100'000; ++i) {
            Asset gone = room.asset("p/a.png");
            gone.url = room.path(qPrintable(QStringLiteral("p/gone-%1.png").arg(i)));
            order.append(gone);
        }
        order[60'000] = room.asset("p/a.png");
        room.library->setPlaying(PlayRequest{order.at(60'000), order});
        room.room = std::make_unique<ScreeningRoom>(room.library.get(), Room::optionsFor(room));
        QCOMPARE(room.room->index(), 60'000);
        QElapsedTimer timer;
        timer.start();
        constexpr int steps = 100;
        for (int i = 0; i < steps; ++i)
            room.room->go(1);
        QCOMPARE(room.room->index(), 60'000 + steps);
        QVERIFY2(timer.elapsed() < 16 * steps, qPrintable(QString::number(timer.elapsed())));
        timer.restart();
        room.room->advanceAfterEnd(); // nothing of it is there any more
        QCOMPARE(room.room->index(), 60'000 + steps);
        room.room->go(-steps);
        QCOMPARE(room.room->name(), named("a.png"));
        room.room->close();
        QVERIFY(!room.library->playing());
    }

    // The end

    void atTheEndTheNextOfTheSameKindPlays() {
        Room room;
        room.clip("p/a.mp4", "blink.mp4");
        room.picture("p/b.png");
        room.clip("p/c.mp3", "tone.mp3");
        room.clip("p/d.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png", "p/c.mp3", "p/d.mp4"});
        QTRY_COMPARE_WITH_TIMEOUT(screening.name(), named("d.mp4"), 20'000);
        QVERIFY(screening.engine()->isPlaying());
    }

    void atTheEndOfTheLastTheFilmStays() {
        Room room;
        room.clip("p/a.mp4", "blink.mp4");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY_WITH_TIMEOUT(screening.engine()->duration() > 0 && !screening.engine()->isPlaying(), 20'000);
        QCOMPARE(screening.name(), named("a.mp4"));
        QCOMPARE(screening.engine()->url(), room.path("p/a.mp4"));
    }

    void atTheEndNothingFollowsWhenItIsNotWanted() {
        Room room;
        room.clip("p/a.mp4", "blink.mp4");
        room.clip("p/b.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.mp4"});
        screening.setAutoplayNext(false);
        QTRY_VERIFY_WITH_TIMEOUT(screening.engine()->duration() > 0 && !screening.engine()->isPlaying(), 20'000);
        QCOMPARE(screening.name(), named("a.mp4"));
        QVERIFY(!room.preferences.value(PreferenceKeys::autoplayNext));
    }

    void atTheEndFilesThatAreGoneArePassedOver() {
        Room room;
        room.clip("p/a.mp4");
        room.clip("p/c.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/gone.mp4", "p/c.mp4"});
        screening.advanceAfterEnd();
        QCOMPARE(screening.name(), named("c.mp4"));
    }

    // The controls

    void theControlsHideWhileAFilmRunsAndNobodyMoves() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QVERIFY(screening.chrome());
        QCOMPARE(screening.lastMove(), room.now);
        room.now = room.now + 2.5;
        QTest::qWait(600); // one look at the clock, which says that it is not yet time
        QVERIFY(screening.chrome());
        room.now = room.now + 0.1;
        QTRY_VERIFY(!screening.chrome());
        QVERIFY(screening.pointerHidden());
        screening.pointerAt({10, 10});
        QVERIFY(screening.chrome());
        QVERIFY(!screening.pointerHidden());
        QCOMPARE(screening.lastMove(), room.now);
    }

    void aPointerThatRestsShowsNothing() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        screening.pointerAt({10, 10});
        room.now = room.now + 3;
        QTRY_VERIFY(!screening.chrome());
        screening.pointerAt({10, 10}); // something has moved under it
        QVERIFY(!screening.chrome());
        screening.pointerAt({11, 10});
        QVERIFY(screening.chrome());
    }

    void aKeyShowsTheControlsEvenIfItMeansNothing() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        room.now = room.now + 3;
        QTRY_VERIFY(!screening.chrome());
        QVERIFY(!screening.handle(Qt::Key_X, Qt::NoModifier, named("x")));
        QVERIFY(screening.chrome());
        QVERIFY(screening.pointerHidden()); // until it moves
        QCOMPARE(screening.lastMove(), room.now);
    }

    void theControlsStayWhileAFilmStands() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        screening.engine()->pause();
        room.now = room.now + 60;
        QTest::qWait(1100); // two looks at the clock
        QVERIFY(screening.chrome());
    }

    void theControlsStayOnAStill() {
        Room room;
        room.picture("p/a.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        room.now = room.now + 60;
        QTest::qWait(1100);
        QVERIFY(screening.chrome());
    }

    void theControlsShowForEachNewFile() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        room.clip("p/b.mp4", "hours.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.mp4"});
        room.now = room.now + 3;
        QTRY_VERIFY(!screening.chrome());
        screening.go(1);
        QVERIFY(screening.chrome());
        QCOMPARE(screening.lastMove(), room.now);
    }

    void whatIsShownBesideTheStageSurvivesALaunch() {
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png");
        ScreeningRoom* screening = &room.open("p/a.png", {"p/a.png", "p/b.png"});
        QVERIFY(!screening->showInfo());
        QVERIFY(screening->showQueue());
        QVERIFY(screening->autoplayNext());
        screening->toggleInfo();
        screening->toggleQueue();
        screening->setAutoplayNext(false);
        screening = &room.open("p/a.png", {"p/a.png", "p/b.png"});
        QVERIFY(screening->showInfo());
        QVERIFY(!screening->showQueue());
        QVERIFY(!screening->autoplayNext());
    }

    void theQueueGivesWayToTheDrawerInANarrowRoom() {
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.png"});
        QSignalSpy changes(&screening, &ScreeningRoom::queueShownChanged);
        screening.setRoomWidth(1350);
        QVERIFY(screening.queueShown());
        screening.setShowInfo(true);
        QVERIFY(!screening.queueShown());
        screening.setRoomWidth(1351);
        QVERIFY(screening.queueShown());
        QCOMPARE(changes.count(), 2);
        room.play("p/a.png", {"p/a.png"});
        QVERIFY(!screening.queueShown());
    }

    void theCapsuleIsAsWideAsTheStageWithinBounds() {
        Room room;
        room.picture("p/a.png");
        ScreeningRoom& screening = room.open("p/a.png", {});
        for (const auto& [stage, capsule] : {std::pair{400, 560}, {560, 560}, {800, 800}, {1100, 1100}, {2000, 1100}}) {
            screening.setStageWidth(stage);
            QCOMPARE(screening.capsuleWidth(), double(capsule));
        }
    }

    // Its life

    void toCloseStopsThePlayerAndClearsWhatPlays() {
        Room room;
        room.clip("p/a.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QSignalSpy changes(&screening, &ScreeningRoom::openChanged);
        screening.close();
        QVERIFY(!room.library->playing());
        QVERIFY(screening.engine()->url().isEmpty());
        QVERIFY(!screening.isOpen());
        QCOMPARE(changes.count(), 1);
        screening.go(1); // a key that comes too late
        QVERIFY(!room.library->playing());
    }

    void thePlayerStopsHoweverTheRoomCloses() {
        Room room;
        room.clip("p/a.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        room.library->setPlaying(std::nullopt);
        QVERIFY(screening.engine()->url().isEmpty());
    }

    void theDoorOpensARoomAndKeepsItUntilItHasFaded() {
        Room room;
        room.clip("p/a.mp4");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        QVERIFY(!door.room());
        room.play("p/a.mp4", {"p/a.mp4"});
        QVERIFY(door.isOpen());
        ScreeningRoom* const first = door.room();
        QVERIFY(first);
        QVERIFY(first->isOpen());
        first->close();
        QVERIFY(!door.isOpen());
        QCOMPARE(door.room(), first);
        room.play("p/a.mp4", {"p/a.mp4"}); // before it has faded
        QCOMPARE(door.room(), first);
        QVERIFY(first->isOpen());
        QCOMPARE(first->engine()->url(), room.path("p/a.mp4"));
        QVERIFY(first->engine()->isPlaying());
        door.faded();
        QCOMPARE(door.room(), first);
        const QPointer<ScreeningRoom> watched(first);
        first->close();
        door.faded();
        QVERIFY(!door.room());
        QTRY_VERIFY(!watched);
    }

    void theDoorHasAPlayerReadyForTheFilmThatIsExpected() {
        Room room;
        room.picture("p/a.png");
        room.clip("p/b.mp4");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        door.expect(room.asset("p/a.png"));
        QVERIFY(!door.readyPlayer()); // a picture needs none
        door.expect(room.asset("p/b.mp4"));
        const std::shared_ptr<MpvHandle> ready = door.readyPlayer();
        QVERIFY(ready && ready->isStarted());
        door.expect(room.asset("p/b.mp4"));
        QCOMPARE(door.readyPlayer(), ready);
        room.play("p/b.mp4", {"p/b.mp4"});
        QCOMPARE(door.room()->engine()->mpv(), ready);
        QVERIFY(!door.readyPlayer());
        QTRY_VERIFY(door.room()->engine()->time() > 0);
        // The room takes its player along when it goes, and another stands ready for the next one.
        door.room()->close();
        door.faded();
        QVERIFY(door.readyPlayer() && door.readyPlayer() != ready);
        room.play("p/b.mp4", {"p/b.mp4"});
        QTRY_VERIFY(door.room()->engine()->time() > 0);
    }

    void aRoomOfStillsLeavesNoPlayerBehind() {
        Room room;
        room.picture("p/a.png");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        room.play("p/a.png", {"p/a.png"});
        door.room()->close();
        door.faded();
        QVERIFY(!door.readyPlayer());
    }

    void anImageComesBackWhenTheRoomIsOpenedAgainBeforeItHasFaded() {
        Room room;
        room.picture("p/a.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        screening.close();
        QVERIFY(!screening.stillImage().isNull()); // it fades with the room
        room.play("p/a.png", {"p/a.png"});
        QVERIFY(!screening.stillImage().isNull());
        QVERIFY(screening.isOpen());
    }

    // Files that are not what they were

    void aFileThatVanishesStaysOnShow() {
        Room room;
        const Location file = room.picture("p/a.png");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(QFile::remove(file.toString()));
        QTRY_VERIFY(!room.library->index().contains(file));
        QCOMPARE(screening.asset(), screening.request().asset);
        QVERIFY(!screening.stillImage().isNull());
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
        screening.go(-1);
        QCOMPARE(screening.name(), named("a.png"));
        screening.close();
        QVERIFY(!room.library->playing());
    }

    void entriesThatAreGoneAreEmptyStagesThatTheArrowsLeave_data() {
        QTest::addColumn<QByteArray>("gone");
        for (const char* const gone : {"p/gone.png", "p/gone.mp4", "p/gone.webm", "p/gone.wav", "p/gone.pdf"})
            QTest::newRow(gone) << QByteArray(gone);
    }
    void entriesThatAreGoneAreEmptyStagesThatTheArrowsLeave() {
        QFETCH(QByteArray, gone);
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png", Qt::blue);
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", gone.constData(), "p/b.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        screening.go(1);
        QCOMPARE(screening.path(), room.path(gone.constData()));
        QVERIFY(screening.stillImage().isNull());
        QTRY_VERIFY(!screening.engine()->isPlaying());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QCOMPARE(screening.stillImage().pixelColor(1, 1), QColor(Qt::blue));
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }

    void aFileThatIsRenamedStaysOnShow() {
        Room room;
        const Location file = room.clip("p/a.mp4");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(screening.engine()->duration() > 0);
        QVERIFY(QFile::rename(file.toString(), room.path("p/other.mp4").toString()));
        QTRY_VERIFY(!room.library->index().contains(file));
        QCOMPARE(screening.path(), file);
        QVERIFY(screening.engine()->isPlaying());
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
    }

    void aFileThatChangesIsShownAnew() {
        Room room;
        room.picture("p/a.png", Qt::red, {64, 48});
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        const Date before = screening.asset().modified;
        room.picture("p/a.png", Qt::blue, {80, 60});
        QTRY_VERIFY(screening.asset().modified != before);
        QTRY_VERIFY(!screening.stillImage().isNull() && screening.stillImage().pixelColor(1, 1) == QColor(Qt::blue));
        QTRY_VERIFY(screening.meta().startsWith(named("80 × 60 · ")));
    }

    void aFilmThatBecomesWholeIsPlayed() {
        Room room;
        room.home.file("Library/p/a.mp4", "not yet");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(!screening.engine()->isPlaying());
        room.clip("p/a.mp4");
        QTRY_VERIFY_WITH_TIMEOUT(screening.engine()->duration() > 0 && screening.engine()->isPlaying(), 20'000);
    }

    void aFilmThatChangesWhileItPlaysPlaysOn() {
        Room room;
        room.clip("p/a.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(screening.engine()->time() > 0.2);
        const Date before = screening.asset().modified;
        TestHome::touch(room.path("p/a.mp4"), before.seconds - 100);
        QTRY_VERIFY(screening.asset().modified != before);
        QVERIFY(screening.engine()->isPlaying());
        QVERIFY(screening.engine()->time() > 0.2);
    }

    void aFilmOfAnUnknownCodecLeavesTheArrowsAtWork() {
        Room room;
        const Location film = room.clip("p/a.mp4", "silent.mp4");
        QFile file(film.toString());
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray bytes = file.readAll().replace("avc1", "zzzz");
        QVERIFY(file.seek(0) && file.write(bytes) == bytes.size());
        file.close();
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY_WITH_TIMEOUT(!screening.engine()->isPlaying(), 20'000); // it has played to its end, or failed
        QVERIFY(screening.isOpen());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }

    void whatNothingCanPlayLeavesTheArrowsAtWork() {
        Room room;
        room.home.file("Library/p/a.mp4", QByteArray(5000, 'x'));
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(!screening.engine()->isPlaying());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QCOMPARE(screening.name(), named("b.png"));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }
};

QTEST_MAIN(tst_ScreeningRoom)
#include "tst_screeningroom.moc"
