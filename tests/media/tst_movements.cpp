// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/player/Movements.h"

#include <QtTest>

using namespace lumbra;

class tst_Movements : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsSentWithoutAWish() { QVERIFY(!Movements().next()); }

    void aSeekIsExactOrCheap_data() {
        QTest::addColumn<bool>("exact");
        QTest::addColumn<QByteArray>("way");
        QTest::newRow("exact") << true << QByteArray("absolute+exact");
        QTest::newRow("cheap") << false << QByteArray("absolute+keyframes");
    }
    void aSeekIsExactOrCheap() {
        QFETCH(bool, exact);
        QFETCH(QByteArray, way);
        Movements movements;
        movements.seek(1.5, exact);
        QCOMPARE(movements.next(), (QByteArrayList{"seek", "1.500000", way}));
        QVERIFY(movements.isUnderWay());
    }

    void ofSeeksAskedForOnTheWayTheLatestFollows() {
        Movements movements;
        movements.seek(1, true);
        QVERIFY(movements.next());
        movements.seek(2, true);
        movements.seek(3, true);
        QVERIFY(!movements.next());
        movements.arrived();
        QCOMPARE(movements.next(), (QByteArrayList{"seek", "3.000000", "absolute+exact"}));
        movements.arrived();
        QVERIFY(!movements.next());
    }

    void stepsBackAreMadeOneAfterTheOther() {
        Movements movements;
        movements.step(-1);
        movements.step(-1);
        QCOMPARE(movements.next(), QByteArrayList{"frame-back-step"});
        QVERIFY(!movements.next());
        movements.arrived();
        QCOMPARE(movements.next(), QByteArrayList{"frame-back-step"});
        movements.arrived();
        QVERIFY(!movements.next());
    }

    // The player does not report those as arrived.
    void stepsForwardAreSentAtOnce() {
        Movements movements;
        movements.step(2);
        QCOMPARE(movements.next(), QByteArrayList{"frame-step"});
        QVERIFY(!movements.isUnderWay());
        QCOMPARE(movements.next(), QByteArrayList{"frame-step"});
        QVERIFY(!movements.next());
    }

    void stepsToAndFroCancelOut() {
        Movements movements;
        movements.begin();
        movements.step(2);
        movements.step(-3);
        movements.arrived();
        QCOMPARE(movements.next(), QByteArrayList{"frame-back-step"});
        movements.arrived();
        QVERIFY(!movements.next());
    }

    void aSeekVoidsTheStepsBeforeItAndStepsFollowIt() {
        Movements movements;
        movements.begin();
        movements.step(-5);
        movements.seek(2, true);
        movements.step(1);
        movements.arrived();
        QCOMPARE(movements.next(), (QByteArrayList{"seek", "2.000000", "absolute+exact"}));
        movements.arrived();
        QCOMPARE(movements.next(), QByteArrayList{"frame-step"});
        QVERIFY(!movements.next());
    }

    void whatIsAskedForDuringALoadFollowsItAndANewLoadForgetsIt() {
        Movements movements;
        movements.begin();
        movements.seek(1, true);
        QVERIFY(!movements.next());
        movements.begin();
        movements.arrived();
        QVERIFY(!movements.next());
    }
};

QTEST_GUILESS_MAIN(tst_Movements)
#include "tst_movements.moc"
