// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"

#include <QtTest>

using namespace lumbra;

// What the player's fields say, how files come and go, seeks and ends: with films that no surface shows, which all but
// the picture needs nothing of.
class tst_PlayerEngine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginsWithNothing() {
        Player player;
        QCOMPARE(player.engine.time(), 0.0);
        QCOMPARE(player.engine.duration(), 0.0);
        QVERIFY(!player.engine.isPlaying());
        QVERIFY(player.engine.videoSize().isEmpty());
        QVERIFY(player.engine.codec().isEmpty());
        QVERIFY(player.engine.glowFrame().isNull());
        QCOMPARE(player.engine.shuttle(), 1.0);
        QCOMPARE(player.engine.speed(), 1.0);
        QVERIFY(!player.engine.loop());
        QCOMPARE(player.engine.volume(), 1.0);
        QVERIFY(!player.engine.muted());
    }

    void loopAndVolumeSurviveALaunchAndMutedDoesNot() {
        Player player;
        player.engine.setLoop(true);
        player.engine.setVolume(0.25);
        player.engine.setMuted(true);
        PlayerEngine next(player.preferences, {{"ao", "null"}});
        QVERIFY(next.loop());
        QCOMPARE(next.volume(), 0.25);
        QVERIFY(!next.muted());
        QVERIFY(!player.preferences.contains(QStringLiteral("playerMuted")));
    }

    void aVolumeThatIsNoNumberIsFull_data() {
        QTest::addColumn<QVariant>("kept");
        QTest::addColumn<double>("volume");
        QTest::newRow("a word") << QVariant(QStringLiteral("loud")) << 1.0;
        QTest::newRow("none") << QVariant(QStringLiteral("nan")) << 1.0;
        QTest::newRow("too loud") << QVariant(7.0) << 1.0;
        QTest::newRow("less than nothing") << QVariant(-1.0) << 0.0;
    }
    void aVolumeThatIsNoNumberIsFull() {
        QFETCH(QVariant, kept);
        QFETCH(double, volume);
        Player player;
        player.preferences.setValue(QStringLiteral("playerVolume"), kept);
        QCOMPARE(PlayerEngine(player.preferences, {{"ao", "null"}}).volume(), volume);
    }

    void mutingLeavesTheVolumeAlone() {
        Player player;
        player.open("tone.wav");
        player.engine.setVolume(0.5);
        player.engine.setMuted(true);
        QTRY_COMPARE(player.value("mute"), "yes");
        QCOMPARE(player.engine.volume(), 0.5);
        player.engine.setMuted(false);
        QTRY_COMPARE(player.value("mute"), "no");
        QCOMPARE(player.value("volume").toDouble(), 50.0);
    }

    void loadWithoutPlayingStandsAtTheBeginning() {
        Player player;
        player.open("h264.mp4");
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.value("pause"), "yes");
        QVERIFY(player.settlesAt(0));
    }

    void loadThatPlaysRuns() {
        Player player;
        player.engine.load(Clips::clip("h264.mp4"), true);
        QVERIFY(player.engine.isPlaying());
        QTRY_VERIFY(player.engine.time() > 0.3);
        QVERIFY(player.engine.isPlaying());
    }

    void loadWithoutPlayingStandsEvenAfterAFilmThatRuns() {
        Player player;
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(player.engine.time() > 0.2);
        player.engine.load(Clips::clip("h264.mp4"), false);
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), 0.0);
        QTRY_VERIFY(player.engine.isStanding());
        QCOMPARE(player.value("pause"), "yes");
        QVERIFY(player.settlesAt(0));
    }

    void loadOfTheSameFileDoesNothingEvenAtItsEnd() {
        Player player;
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        const double time = player.engine.time();
        player.engine.load(Clips::clip("blink.mp4"), true);
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), time);
        player.engine.load(Clips::clip("slow.mp4"), false);
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player.ends, 2);
    }

    void loadOfAnotherFileForgetsTheFacts() {
        Player player;
        player.open("h264.mp4");
        player.engine.seek(1, true);
        player.engine.shuttle(1);
        player.engine.shuttle(1);
        QCOMPARE(player.engine.shuttle(), 2.0);
        player.engine.load(Clips::clip("tone.wav"), false);
        QCOMPARE(player.engine.time(), 0.0);
        QCOMPARE(player.engine.duration(), 0.0);
        QVERIFY(player.engine.videoSize().isEmpty());
        QVERIFY(player.engine.codec().isEmpty());
        QCOMPARE(player.engine.shuttle(), 1.0);
    }

    void factsOfAFileThatWasChangedDuringItsLoadAreDropped() {
        Player player;
        QList<QSize> sizes;
        QObject::connect(&player.engine, &PlayerEngine::videoSizeChanged,
                         [&] { sizes.append(player.engine.videoSize()); });
        for (int round = 0; round < 10; ++round) {
            player.engine.load(Clips::clip("turned.mp4"), true);
            player.engine.load(Clips::clip("h264.mp4"), true);
        }
        QTRY_VERIFY(!sizes.isEmpty());
        player.engine.load(Clips::clip("tone.wav"), true);
        QTRY_VERIFY(player.engine.duration() > 0 && player.engine.time() > 0.2);
        QCOMPARE(sizes, (QList{QSize(160, 90), QSize()}));
    }

    void playJustBeforeTheEndStartsOver() {
        Player player;
        player.open("h264.mp4");
        player.engine.seek(player.engine.duration() - 0.04, true);
        player.engine.play();
        QCOMPARE(player.engine.time(), 0.0);
        QTRY_VERIFY(player.engine.time() > 0.1 && player.engine.time() < 1.5);
    }

    void playALittleBeforeTheEndGoesOn_data() {
        QTest::addColumn<bool>("settles");
        QTest::newRow("at once") << false;
        QTest::newRow("once it stands there") << true; // where a picture begins 0.04 before the end
    }
    void playALittleBeforeTheEndGoesOn() {
        QFETCH(bool, settles);
        Player player;
        player.open("h264.mp4");
        const double there = player.engine.duration() - 0.06;
        player.engine.seek(there, true);
        if (settles)
            QTRY_VERIFY(player.stands() && player.engine.isStanding());
        player.engine.play();
        QVERIFY(std::abs(player.engine.time() - there) < 0.002);
        QTRY_COMPARE(player.ends, 1);
        QCOMPARE(player.engine.time(), player.engine.duration());
    }

    // Though the player has nothing left to show there.
    void playALittleBeforeTheEndOfALongLastPictureGoesOn() {
        Player player;
        player.open("slow.mp4");
        const double there = player.engine.duration() - 0.1;
        player.engine.seek(there, true);
        QTRY_VERIFY(player.stands() && player.engine.isStanding());
        player.engine.play();
        QVERIFY(player.engine.time() > 1.8);
        QVERIFY(player.engine.isPlaying());
        QTRY_COMPARE(player.ends, 1);
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), player.engine.duration());
    }

    void aFilmWhoseLastPictureIsLongStartsOverToo() {
        Player player;
        player.engine.load(Clips::clip("slow.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        QCOMPARE(player.engine.time(), player.engine.duration());
        player.engine.play();
        QCOMPARE(player.engine.time(), 0.0);
        QTRY_COMPARE(player.ends, 2);
    }

    void seekIsClampedToTheFile() {
        Player player;
        player.open("h264.mp4");
        player.engine.seek(-3, true);
        QCOMPARE(player.engine.time(), 0.0);
        player.engine.seek(100, true);
        QVERIFY(std::abs(player.engine.time() - player.engine.duration()) < 0.001);
        QVERIFY(!player.engine.isPlaying());
        player.engine.seek(qQNaN(), true);
        QCOMPARE(player.engine.time(), 0.0);
    }

    void seekKnowsNoEndWhileTheDurationIsUnknown() {
        Player player;
        player.engine.seek(100, true);
        QCOMPARE(player.engine.time(), 100.0);
        player.engine.seek(-1, true);
        QCOMPARE(player.engine.time(), 0.0);
    }

    void seekSaysAtOnceWhereItGoesAndNeverLooksBack() {
        Player player;
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(player.engine.time() > 0.1);
        QList<double> times;
        QObject::connect(&player.engine, &PlayerEngine::timeChanged, [&] { times.append(player.engine.time()); });
        player.engine.seek(5, true);
        QCOMPARE(player.engine.time(), 5.0);
        QTRY_VERIFY(player.engine.time() > 5.2);
        QVERIFY(*std::min_element(times.begin(), times.end()) >= 5 - 0.041);
    }

    void positionsAreWholeParts() {
        Player player;
        player.engine.seek(1.00049, true);
        QCOMPARE(player.engine.time(), 1.0);
        player.engine.seek(1.1, true);
        QCOMPARE(player.engine.time(), 1.1);
    }

    void exactSeekOfAFilmThatStandsStaysWhereItWentToBetweenPictures() {
        Player player;
        player.open("slow.mp4");
        player.engine.seek(0.9, true);
        QTRY_VERIFY(player.stands() && player.engine.isStanding());
        QCOMPARE(player.engine.time(), 0.9);
        player.engine.step(1);
        QTRY_VERIFY(std::abs(player.engine.time() - 1.2) < 0.001);
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 1.3);
    }

    void exactSeekLandsThereAndCheapOneNearby() {
        Player player;
        player.open("rare.mp4"); // with one key picture, at its beginning
        player.engine.seek(2, true);
        QVERIFY(player.settlesAt(2));
        player.engine.seek(3, false);
        QCOMPARE(player.engine.time(), 3.0);
        QVERIFY(player.settlesAt(0));
    }

    void ofManySeeksTheLastWins() {
        Player player;
        player.open("long.mp4");
        for (int i = 0; i < 100; ++i)
            player.engine.seek(i * 0.08, i % 2 == 0);
        player.engine.seek(4.2, true);
        QCOMPARE(player.engine.time(), 4.2);
        QVERIFY(player.settlesAt(4.2));
    }

    void seekBeforeTheFileIsOpenIsMadeUpFor() {
        Player player;
        player.engine.load(Clips::clip("long.mp4"), false);
        player.engine.seek(6, true);
        QVERIFY(player.settlesAt(6));
    }

    void theEndIsToldOnce() {
        Player player;
        player.engine.load(Clips::clip("h264.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), player.engine.duration());
        player.engine.play();
        QCOMPARE(player.engine.time(), 0.0);
        QTRY_COMPARE(player.ends, 2);
    }

    void theEndNeedsNobodyToTellItTo() {
        Player player;
        player.engine.setOnEnd({});
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_VERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), player.engine.duration());
    }

    void theEndMayLoadTheNextFile() {
        Player player;
        player.engine.setOnEnd([&] { player.engine.load(Clips::clip("tone.wav"), true); });
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_VERIFY(player.engine.url() == Clips::clip("tone.wav") && player.engine.time() > 0.2);
        QVERIFY(player.engine.isPlaying());
    }

    void theEndMayBeTheEndOfThePlayer() {
        TestHome home;
        Preferences preferences(home.path().child("settings.ini"));
        auto engine = std::make_unique<PlayerEngine>(preferences, MpvHandle::Options{{"ao", "null"}});
        engine->setOnEnd([&] { engine.reset(); });
        engine->load(Clips::clip("blink.mp4"), true);
        QTRY_VERIFY(!engine);
    }

    void soundHasNoPicturesToStepBy() {
        Player player;
        player.open("tone.wav");
        player.engine.step(-1);
        player.engine.seek(1, true);
        QVERIFY(player.settlesAt(1, 0.05));
    }

    void stopUnloadsSoThatTheSameFileLoadsAgain() {
        Player player;
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(player.engine.time() > 0.2);
        player.engine.stop();
        QVERIFY(!player.engine.isPlaying());
        QVERIFY(player.engine.url().isEmpty());
        QTRY_COMPARE(player.value("idle-active"), "yes");
        player.engine.play();
        QVERIFY(!player.engine.isPlaying());
        player.engine.load(Clips::clip("long.mp4"), true);
        QCOMPARE(player.engine.time(), 0.0);
        QTRY_VERIFY(player.engine.time() > 0.2);
    }

    void whatStandsCostsNothing() {
        Player player;
        player.open("long.mp4");
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 0.2);
        player.engine.pause();
        QTRY_COMPARE(player.value("pause"), "yes");
        int changes = 0;
        QObject::connect(&player.engine, &PlayerEngine::timeChanged, [&] { ++changes; });
        const double there = player.engine.time();
        QTest::qWait(300);
        QVERIFY(changes <= 1); // it settles on the picture it stands at
        QVERIFY(std::abs(player.engine.time() - there) < 0.1);
    }
};

QTEST_GUILESS_MAIN(tst_PlayerEngine)
#include "tst_playerengine.moc"
