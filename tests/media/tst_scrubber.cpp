// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScrubberFixture.h"
#include "media/room/ScrubGeometry.h"
#include "media/room/Track.h"
#include "support/FilmClips.h"

#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

class tst_Scrubber : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    // The track

    void aFilmFillsTheTrackWithTwelveFrames() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(Clips::clip("long.mp4")));
        QVERIFY(scrubber.isVideo());
        QTRY_COMPARE(scrubber.strip().size(), 12);
        for (const QImage& frame : scrubber.strip())
            QVERIFY(!frame.isNull() && frame.width() <= 320 && frame.height() <= 320);
        QVERIFY(scrubber.bars().isEmpty());
    }

    void aSoundFillsTheTrackWithBars() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(Clips::clip("tone.wav")));
        QVERIFY(!scrubber.isVideo());
        QTRY_COMPARE(scrubber.bars().size(), 140);
        QVERIFY(scrubber.strip().isEmpty());
    }

    void otherKindsLeaveTheTrackEmpty() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(home().file("a.txt")));
        QVERIFY(scrubber.strip().isEmpty() && scrubber.bars().isEmpty());
    }

    void anotherFileClearsTheTrackAtOnce() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(Clips::clip("long.mp4")));
        QTRY_COMPARE(scrubber.strip().size(), 12);
        scrubber.setAsset(assetOf(Clips::clip("tone.wav")));
        QVERIFY(scrubber.strip().isEmpty() && scrubber.bars().isEmpty());
        QTRY_COMPARE(scrubber.bars().size(), 140);
        scrubber.setAsset(assetOf(Clips::clip("h264.mp4")));
        QVERIFY(scrubber.bars().isEmpty());
    }

    void framesOfTheFileBeforeDoNotArrive() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(make("fresh.mp4", counting(4, 10) + QStringLiteral(" -c:v libx264"))));
        scrubber.setAsset(assetOf(Clips::clip("tone.wav")));
        QTRY_COMPARE(scrubber.bars().size(), 140);
        QVERIFY(scrubber.strip().isEmpty());
    }

    void theTrackWaitsForTheFilmThatIsBeingOpened() {
        Player player;
        Scrubber scrubber;
        scrubber.setAsset(assetOf(Clips::clip("long.mp4"))); // from now on its frames are at hand
        QTRY_COMPARE(scrubber.strip().size(), 12);
        scrubber.setAsset({});
        scrubber.setEngine(&player.engine);
        player.engine.awaitSurface(true);
        player.engine.load(Clips::clip("long.mp4"), true);
        scrubber.setAsset(assetOf(Clips::clip("long.mp4")));
        QCoreApplication::sendPostedEvents();
        QVERIFY(player.engine.time() <= 0);
        QVERIFY(scrubber.strip().isEmpty());
        QTRY_COMPARE(scrubber.strip().size(), 12);
        QVERIFY(player.engine.time() > 0);
    }

    void aStarLeavesTheTrackAlone() {
        Scrubber scrubber;
        Asset asset = assetOf(Clips::clip("long.mp4"));
        scrubber.setAsset(asset);
        QTRY_COMPARE(scrubber.strip().size(), 12);
        QSignalSpy changes(&scrubber, &Scrubber::trackChanged);
        asset.starred = Date{1};
        scrubber.setAsset(asset);
        QVERIFY(changes.isEmpty());
    }

    // The drag

    void aDragPausesAndGoesOnAfterTheRelease() {
        Scrubbed on("long.mp4");
        on.player.engine.play();
        on.scrubber.drag(100);
        QVERIFY(on.scrubber.isDragging());
        QVERIFY(!on.player.engine.isPlaying());
        QVERIFY(isNear(on.player.engine.time(), on.timeAt(0.25)));
        on.scrubber.drag(200);
        QVERIFY(isNear(on.player.engine.time(), on.timeAt(0.5)));
        on.scrubber.release(200);
        QVERIFY(!on.scrubber.isDragging());
        QVERIFY(on.player.engine.isPlaying());
        QTRY_VERIFY(on.player.engine.time() > on.timeAt(0.5) + 0.1);
    }

    void aDragThatStartsWhilePausedStaysPaused() {
        Scrubbed on("long.mp4");
        on.scrubber.drag(100);
        on.scrubber.release(300);
        QVERIFY(!on.player.engine.isPlaying());
        QVERIFY(on.player.settlesAt(on.timeAt(0.75), 0.05));
        QVERIFY(!on.player.engine.isPlaying());
    }

    void thePlayheadStaysUnderThePointer() {
        Scrubbed on("rare.mp4");
        on.scrubber.drag(300);
        QVERIFY(on.player.settlesAt(0)); // its one key picture
        QCOMPARE(on.scrubber.playhead(), 300.0);
        on.scrubber.drag(500);
        QCOMPARE(on.scrubber.playhead(), 400.0);
        on.scrubber.release(200);
        QVERIFY(isNear(on.scrubber.playhead(), 200, 1));
    }

    // The film has one key picture, at its beginning: what is cheap to show is that, whatever was asked for.
    void theDragIsCheapAndTheReleaseExact() {
        Scrubbed on("rare.mp4");
        on.scrubber.drag(200);
        QVERIFY(on.player.settlesAt(0));
        on.scrubber.release(200);
        QVERIFY(on.player.settlesAt(on.timeAt(0.5), 0.05));
    }

    void aPointerBeyondAnEndIsThere() {
        Scrubbed on("long.mp4");
        on.scrubber.drag(-50);
        QCOMPARE(on.player.engine.time(), 0.0);
        on.scrubber.drag(5000);
        QVERIFY(isNear(on.player.engine.time(), on.player.engine.duration()));
        on.scrubber.release(-1);
        QCOMPARE(on.player.engine.time(), 0.0);
    }

    void withoutADurationADragSeeksToTheBeginning() {
        Player player;
        Scrubber scrubber;
        scrubber.setEngine(&player.engine);
        scrubber.setWidth(400);
        player.engine.seek(3, true);
        scrubber.drag(200);
        QCOMPARE(player.engine.time(), 0.0);
        scrubber.release(300);
        QCOMPARE(player.engine.time(), 0.0);
    }

    void withoutAWidthADragSeeksToTheBeginning() {
        Scrubbed on("long.mp4");
        on.scrubber.setWidth(0);
        on.scrubber.drag(200);
        QCOMPARE(on.player.engine.time(), 0.0);
    }

    void aReleaseWithoutADragDoesNothing() {
        Scrubbed on("long.mp4");
        on.player.engine.wasPlayingBeforeScrub = true;
        on.scrubber.release(200);
        QCOMPARE(on.player.engine.time(), 0.0);
        QVERIFY(!on.player.engine.isPlaying());
    }

    void anotherFileEndsTheDrag() {
        Scrubbed on("long.mp4");
        on.player.engine.play();
        on.scrubber.drag(200);
        on.player.open("h264.mp4");
        on.scrubber.setAsset(assetOf(Clips::clip("h264.mp4")));
        QVERIFY(!on.scrubber.isDragging());
        on.scrubber.release(300);
        QCOMPARE(on.player.engine.time(), 0.0);
        QVERIFY(!on.player.engine.isPlaying());
    }

    void aPlayerThatGoesTakesTheDragAlong() {
        auto on = std::make_unique<Player>();
        on->open("long.mp4");
        Scrubber scrubber;
        scrubber.setWidth(400);
        scrubber.setEngine(&on->engine);
        scrubber.drag(10);
        on.reset();
        scrubber.drag(20);
        scrubber.release(30);
        scrubber.hover(40);
        QCOMPARE(scrubber.hoverTime(), 0.0);
        QCOMPARE(scrubber.playhead(), 0.0);
    }

    void thePlayheadFollowsThePlayer() {
        Scrubbed on("long.mp4");
        QCOMPARE(on.scrubber.playhead(), 0.0);
        QSignalSpy moves(&on.scrubber, &Scrubber::playheadChanged);
        on.player.engine.seek(on.timeAt(0.5), true);
        QVERIFY(isNear(on.scrubber.playhead(), 200, 0.1));
        QVERIFY(!moves.isEmpty());
        on.scrubber.setWidth(100);
        QVERIFY(isNear(on.scrubber.playhead(), 50, 0.1));
    }

    // The geometry

    void theCardStaysOverTheTrack_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("left");
        QTest::newRow("in the middle") << 400.0 << 800.0 << 304.0;
        QTest::newRow("at the left end") << 10.0 << 800.0 << 0.0;
        QTest::newRow("just off the left end") << 96.0 << 800.0 << 0.0;
        QTest::newRow("at the right end") << 795.0 << 800.0 << 608.0;
        QTest::newRow("a track narrower than the card") << 50.0 << 100.0 << 0.0;
    }
    void theCardStaysOverTheTrack() {
        QFETCH(double, x);
        QFETCH(double, width);
        QTEST(ScrubGeometry::cardLeft(x, width), "left");
    }

    void theCardRisesByTheFilmsProportions_data() {
        QTest::addColumn<QSize>("video");
        QTest::addColumn<double>("rise");
        QTest::newRow("not known") << QSize() << 152.0;
        QTest::newRow("wide") << QSize(1920, 1080) << 192.0 * 9 / 16 + 44;
        QTest::newRow("very wide") << QSize(2560, 640) << 48.0 + 44;
        QTest::newRow("square") << QSize(500, 500) << 192.0 + 44;
        QTest::newRow("tall") << QSize(1080, 1920) << 244.0;
    }
    void theCardRisesByTheFilmsProportions() {
        QFETCH(QSize, video);
        QTEST(ScrubGeometry::cardRise(video), "rise");
    }

    void theCardFollowsTheFilm() {
        Scrubbed on("h264.mp4"); // 160 by 90
        QTRY_COMPARE(on.scrubber.cardRise(), 192.0 * 9 / 16 + 44);
        on.scrubber.hover(200);
        QCOMPARE(on.scrubber.cardLeft(), 104.0);
    }

    void whatHasPlayedIsAPart_data() {
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("duration");
        QTest::addColumn<double>("part");
        QTest::newRow("on the way") << 2.5 << 10.0 << 0.25;
        QTest::newRow("past the end") << 11.0 << 10.0 << 1.0;
        QTest::newRow("before the beginning") << -1.0 << 10.0 << 0.0;
        QTest::newRow("no duration") << 5.0 << 0.0 << 0.0;
    }
    void whatHasPlayedIsAPart() {
        QFETCH(double, time);
        QFETCH(double, duration);
        QTEST(ScrubGeometry::playedPart(time, duration), "part");
    }

    void barsSpreadOverTheTrack() {
        const QSizeF track(700, 46);
        const QRectF first = ScrubGeometry::bar(0, 140, 1, track), last = ScrubGeometry::bar(139, 140, 0.5F, track);
        QCOMPARE(first, QRectF(0.75, 4, 3.5, 38));
        QCOMPARE(last, QRectF(695.75, 13.5, 3.5, 19));
        QCOMPARE(ScrubGeometry::bar(0, 140, 0.06F, track).height(), 3.0);
        QCOMPARE(ScrubGeometry::bar(0, 140, 1, QSizeF(140, 46)).width(), 1.5);
    }

    void theTrackShowsFramesSideBySide() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(make("track.mp4", counting(12, 10) + QStringLiteral(" -c:v libx264"))));
        QTRY_COMPARE(scrubber.strip().size(), 12);
        const QImage shown = painted(scrubber, QSize(960, 46)); // 80 by 45 is a frame's proportions
        for (int i = 0; i < 12; ++i)
            QVERIFY(std::abs(numberIn(shown.copy(i * 80, 0, 80, 46)) - (i * 10 + 5)) <= 6);
        QCOMPARE(shown.pixelColor(0, 0).alpha(), 0); // outside its round corner
        QCOMPARE(shown.pixelColor(480, 0).alpha(), 255);
    }

    void theTrackShowsBars() {
        Scrubber scrubber;
        scrubber.setAsset(assetOf(Clips::clip("tone.wav")));
        QTRY_COMPARE(scrubber.bars().size(), 140);
        const QImage shown = painted(scrubber, QSize(700, 46));
        QVERIFY(shown.pixelColor(352, 23).alpha() > 200); // in a bar
        QVERIFY(shown.pixelColor(350, 23).alpha() < 100); // between two
        QVERIFY(shown.pixelColor(352, 1).alpha() < 100);  // above
    }

private:
    // The track as it is drawn, in red on nothing.
    static QImage painted(Scrubber& scrubber, const QSize& size) {
        Track track;
        track.setProperty("barColor", QColor(Qt::red));
        track.setProperty("radius", 7.0);
        track.setSize(size);
        track.setScrubber(&scrubber);
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        track.paint(&painter);
        painter.end();
        return image;
    }
};

QTEST_MAIN(tst_Scrubber)
#include "tst_scrubber.moc"
