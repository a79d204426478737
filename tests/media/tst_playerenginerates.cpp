// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"

#include <QtTest>

using namespace lumbra;

// How fast and in which direction a file runs: the keys J, K and L, the speed, the loop, and steps by pictures.
class tst_PlayerEngineRates : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void forwardWhilePausedPlaysOnceNotAtTheSpeed() {
        Player player;
        player.open("long.mp4");
        player.engine.setSpeed(1.5);
        QVERIFY(!player.engine.isPlaying());
        player.engine.shuttle(1);
        QVERIFY(player.engine.isPlaying());
        QCOMPARE(player.engine.shuttle(), 1.0);
        QTRY_COMPARE(player.value("speed").toDouble(), 1.0);
        player.engine.play();
        QTRY_COMPARE(player.value("speed").toDouble(), 1.5);
    }

    void forwardThriceIsFourAndStays() {
        Player player;
        player.open("long.mp4");
        for (const double rate : {1.0, 2.0, 4.0, 4.0}) {
            player.engine.shuttle(1);
            QCOMPARE(player.engine.shuttle(), rate);
            QTRY_COMPARE(player.value("speed").toDouble(), rate);
        }
        player.engine.shuttle(0);
        QCOMPARE(player.engine.shuttle(), 1.0);
        QVERIFY(!player.engine.isPlaying());
        QTRY_COMPARE(player.value("pause"), "yes");
    }

    void forwardAtTheEndEndsAgain() {
        Player player;
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        player.engine.shuttle(1);
        QCOMPARE(player.engine.shuttle(), 1.0);
        QTRY_COMPARE(player.ends, 2);
        QVERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.time(), player.engine.duration());
    }

    void theSpeedTakesOverFromTheKeys() {
        Player player;
        player.open("long.mp4");
        player.engine.shuttle(1);
        player.engine.shuttle(1);
        QTRY_COMPARE(player.value("speed").toDouble(), 2.0);
        player.engine.setSpeed(1.5);
        QTRY_COMPARE(player.value("speed").toDouble(), 1.5);
        QCOMPARE(player.engine.shuttle(), 2.0);
        QVERIFY(player.engine.isPlaying());
    }

    void backwardRunsBackward() {
        Player player;
        player.open("long.mp4");
        player.engine.seek(5, true);
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 5.1);
        player.engine.shuttle(-1);
        QCOMPARE(player.engine.shuttle(), -1.0);
        QVERIFY(player.engine.isPlaying());
        QTRY_VERIFY(player.engine.time() < 4.5);
        player.engine.shuttle(-1);
        QCOMPARE(player.engine.shuttle(), -2.0);
        player.engine.shuttle(0);
        QCOMPARE(player.engine.shuttle(), 1.0);
        QVERIFY(!player.engine.isPlaying());
        QTRY_COMPARE(player.value("play-dir"), "forward");
        const double there = player.engine.time();
        QVERIFY(there < 4.5);
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > there + 0.2);
    }

    void backwardStandsAtTheBeginning() {
        Player player;
        player.open("long.mp4");
        player.engine.seek(0.6, true);
        player.engine.shuttle(-1);
        QTRY_VERIFY(player.engine.time() < 0.5 && player.engine.time() > 0.1);
        QTRY_VERIFY(!player.engine.isPlaying());
        QCOMPARE(player.ends, 0);
        QTRY_VERIFY(player.engine.time() < 0.05);
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 0.2);
    }

    void backwardFromTheEnd() {
        Player player;
        player.engine.load(Clips::clip("silent.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        player.engine.shuttle(-1);
        QVERIFY(player.engine.isPlaying());
        QTRY_VERIFY(player.engine.time() < 1.5 && player.engine.time() > 0);
        QCOMPARE(player.ends, 1);
    }

    void backwardWhereNothingRunsBackwardJumps() {
        Player player;
        player.open("tone.wav");
        player.engine.seek(1, true);
        player.engine.shuttle(-1);
        QCOMPARE(player.engine.time(), 0.0);
        QCOMPARE(player.engine.shuttle(), -1.0);
        QVERIFY(!player.engine.isPlaying());
        QVERIFY(player.settlesAt(0, 0.05));
        QCOMPARE(player.value("pause"), "yes");
    }

    void backwardJumpsOnWhileSoundRuns() {
        Player player;
        player.open("tone.wav");
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 0.2);
        player.engine.shuttle(-1);
        player.engine.shuttle(-1);
        QCOMPARE(player.engine.shuttle(), -1.0);
        QVERIFY(player.engine.isPlaying());
        QTRY_COMPARE(player.ends, 1);
    }

    void speedFollowsAtOnceWhilePlaying() {
        Player player;
        player.open("long.mp4");
        player.engine.setSpeed(2);
        QVERIFY(!player.engine.isPlaying());
        player.engine.play();
        QTRY_COMPARE(player.value("speed").toDouble(), 2.0);
        player.engine.setSpeed(0.5);
        QTRY_COMPARE(player.value("speed").toDouble(), 0.5);
        QCOMPARE(player.engine.shuttle(), 1.0);
    }

    void loopBeginsAgainAtTheSpeed() {
        Player player;
        player.engine.setLoop(true);
        player.engine.setSpeed(2);
        int jumps = 0;
        double last = 0;
        QObject::connect(&player.engine, &PlayerEngine::timeChanged, [&] {
            jumps += player.engine.time() < last - 0.1;
            last = player.engine.time();
        });
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_VERIFY(jumps >= 3);
        QVERIFY(player.engine.isPlaying());
        QCOMPARE(player.ends, 0);
        QCOMPARE(player.value("speed").toDouble(), 2.0);
        player.engine.setLoop(false);
        QTRY_COMPARE(player.ends, 1);
    }

    void stepsMoveByPictures() {
        Player player;
        player.open("long.mp4");
        player.engine.seek(3, true);
        QVERIFY(player.settlesAt(3));
        player.engine.step(1);
        QVERIFY(player.settlesAt(3.04));
        player.engine.step(-1);
        QVERIFY(player.settlesAt(3));
        for (int i = 0; i < 4; ++i)
            player.engine.step(-1);
        QVERIFY(player.settlesAt(2.84));
        QVERIFY(!player.engine.isPlaying());
    }

    void aStepPauses() {
        Player player;
        player.open("long.mp4");
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 0.2);
        player.engine.step(1);
        QVERIFY(!player.engine.isPlaying());
        QTRY_COMPARE(player.value("pause"), "yes");
    }

    void aStepBackFromTheEnd() {
        Player player;
        player.engine.load(Clips::clip("silent.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        player.engine.step(-1);
        QTRY_VERIFY(player.engine.time() < player.engine.duration() - 0.03);
        QVERIFY(player.engine.time() > player.engine.duration() - 0.2);
    }
};

QTEST_GUILESS_MAIN(tst_PlayerEngineRates)
#include "tst_playerenginerates.moc"
