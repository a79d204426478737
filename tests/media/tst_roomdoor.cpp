// What is made ready behind the door of the screening room: the rehearsal of the first film.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"
#include "media/room/RoomDoor.h"

#include <QPointer>
#include <QtTest>

using namespace lumbra;

namespace {
constexpr int longerThanItWaits = 200; // milliseconds
}

class tst_RoomDoor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstFilmThatIsExpectedIsRehearsedOnce() {
        Room room;
        room.clip("p/a.mp4");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        QVERIFY(!door.rehearsal());
        door.expect(room.asset("p/a.mp4"));
        QTRY_VERIFY(door.rehearsal());
        QVERIFY(!door.rehearsal()->isOpen());
        QCOMPARE(door.rehearsal()->stage(), QStringLiteral("video"));
        QVERIFY(!door.rehearsal()->ambient().isNull());
        door.rehearsed();
        QVERIFY(!door.rehearsal());
        door.expect(room.asset("p/a.mp4"));
        QTest::qWait(longerThanItWaits);
        QVERIFY(!door.rehearsal());
    }

    void aRoomThatOpensEndsTheRehearsal() {
        Room room;
        room.clip("p/a.mp4");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        door.expect(room.asset("p/a.mp4"));
        QTRY_VERIFY(door.rehearsal());
        const QPointer<ScreeningRoom> rehearsal(door.rehearsal());
        room.play("p/a.mp4", {"p/a.mp4"});
        QVERIFY(!door.rehearsal());
        QVERIFY(door.room() && door.room() != rehearsal);
        QVERIFY(!rehearsal || rehearsal->engine()->url().isEmpty()); // what is played is not for it
        QTRY_VERIFY(!rehearsal);
        QTRY_VERIFY(door.room()->engine()->time() > 0);
    }

    void aRoomThatHasOpenedNeedsNone() {
        Room room;
        room.picture("p/a.png");
        room.clip("p/b.mp4");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        door.expect(room.asset("p/b.mp4"));
        room.play("p/a.png", {"p/a.png"});
        QTest::qWait(longerThanItWaits);
        QVERIFY(!door.rehearsal());
    }

    void picturesAreNotRehearsed() {
        Room room;
        room.picture("p/a.png");
        room.openLibrary();
        RoomDoor door(room.library.get(), Room::optionsFor(room));
        door.expect(room.asset("p/a.png"));
        QTest::qWait(longerThanItWaits);
        QVERIFY(!door.rehearsal());
    }
};

QTEST_MAIN(tst_RoomDoor)
#include "tst_roomdoor.moc"
