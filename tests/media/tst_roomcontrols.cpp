// What stands over and beside the stage of the screening room, without a window: the controls that hide, the panels;
// and how a room opens and closes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"
#include "media/room/RoomDoor.h"

#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

class tst_RoomControls : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_MAIN(tst_RoomControls)
#include "tst_roomcontrols.moc"
