// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/RoomLayout.h"

#include <QtTest>

using namespace lumbra;

class tst_RoomLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theCapsuleIsAsWideAsTheStageWithinBounds_data() {
        QTest::addColumn<double>("stage");
        QTest::addColumn<double>("capsule");
        QTest::newRow("not measured yet") << 0.0 << 560.0;
        QTest::newRow("narrower than it may be") << 559.0 << 560.0;
        QTest::newRow("just as narrow as it may be") << 560.0 << 560.0;
        QTest::newRow("between") << 800.5 << 800.5;
        QTest::newRow("just as wide as it may be") << 1100.0 << 1100.0;
        QTest::newRow("wider") << 2560.0 << 1100.0;
    }
    void theCapsuleIsAsWideAsTheStageWithinBounds() {
        QFETCH(double, stage);
        QTEST(RoomLayout::capsuleWidth(stage), "capsule");
    }

    void theQueueShowsWhereItIsWantedAndFindsRoom_data() {
        QTest::addColumn<bool>("wanted");
        QTest::addColumn<int>("files");
        QTest::addColumn<bool>("drawer");
        QTest::addColumn<double>("room");
        QTest::addColumn<bool>("shows");
        QTest::newRow("wanted, two files, no drawer") << true << 2 << false << 900.0 << true;
        QTest::newRow("not wanted") << false << 2 << false << 2560.0 << false;
        QTest::newRow("one file has nothing next") << true << 1 << false << 2560.0 << false;
        QTest::newRow("no files") << true << 0 << false << 2560.0 << false;
        QTest::newRow("the drawer pushes it out of a narrow room") << true << 9 << true << 1350.0 << false;
        QTest::newRow("a wider room holds both") << true << 9 << true << 1350.5 << true;
        QTest::newRow("one file, even in a wide room") << true << 1 << true << 2560.0 << false;
    }
    void theQueueShowsWhereItIsWantedAndFindsRoom() {
        QFETCH(bool, wanted);
        QFETCH(int, files);
        QFETCH(bool, drawer);
        QFETCH(double, room);
        QTEST(RoomLayout::showsQueue(wanted, files, drawer, room), "shows");
    }
};

QTEST_GUILESS_MAIN(tst_RoomLayout)
#include "tst_roomlayout.moc"
