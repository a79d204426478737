// What the screening room does, without a window: what is on show, the walk, the end of a film.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"
#include "core/PreferenceKeys.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

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

    void aFilmIsOpeningUntilItRunsAndAnImageNever() {
        Room room;
        room.clip("p/a.mp4");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QVERIFY(screening.isOpening());
        QTRY_VERIFY(!screening.isOpening());
        QVERIFY(screening.engine()->time() > 0);
        screening.go(1);
        QVERIFY(!screening.isOpening());
    }

    void whatCanNotBePlayedIsNotOpeningForEver() {
        Room room;
        room.home.file("Library/p/a.mp4", "no film");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(!screening.isOpening());
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
        QTRY_COMPARE(screening.name(), named("d.mp4"));
        QVERIFY(screening.engine()->isPlaying());
    }

    void atTheEndOfTheLastTheFilmStays() {
        Room room;
        room.clip("p/a.mp4", "blink.mp4");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(screening.engine()->duration() > 0 && !screening.engine()->isPlaying());
        QCOMPARE(screening.name(), named("a.mp4"));
        QCOMPARE(screening.engine()->url(), room.path("p/a.mp4"));
    }

    void atTheEndNothingFollowsWhenItIsNotWanted() {
        Room room;
        room.clip("p/a.mp4", "blink.mp4");
        room.clip("p/b.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.mp4"});
        screening.setAutoplayNext(false);
        QTRY_VERIFY(screening.engine()->duration() > 0 && !screening.engine()->isPlaying());
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
};

QTEST_MAIN(tst_ScreeningRoom)
#include "tst_screeningroom.moc"
