// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/events/EventBatch.h"

#include <QTest>

using namespace lumbra;
using events::EventBatch;

namespace {

FileEvent at(const char* path, quint32 flags = 0) {
    return {Location(QByteArray(path)), flags};
}

} // namespace

class tst_EventBatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holdsAPathOnceWithAllItsFlags();
    void isEmptyAfterItWasTaken();
    void aTreeStandsForWhatCameBeforeAndAfter();
    void aTreeCoversOnlyWhatIsBelow();
    void aTreeInsideATreeIsCovered();
    void theRootFolderIsATree();
    void aDroppedTreeHidesNothingLater();
};

void tst_EventBatch::holdsAPathOnceWithAllItsFlags() {
    EventBatch batch;
    batch.add("/a/x", FileEvent::created);
    batch.add("/a/x", 0);
    batch.add("/a/y", 0);
    batch.add("/a/y", FileEvent::renamed);
    batch.add("/a/y", FileEvent::created);
    QCOMPARE(batch.take(),
             (QList{at("/a/x", FileEvent::created), at("/a/y", FileEvent::renamed | FileEvent::created)}));
}

void tst_EventBatch::isEmptyAfterItWasTaken() {
    EventBatch batch;
    QVERIFY(batch.isEmpty());
    batch.addTree("/a", FileEvent::created);
    QVERIFY(!batch.isEmpty());
    QCOMPARE(batch.take().size(), 1);
    QVERIFY(batch.isEmpty());
    batch.add("/a/x", 0);
    QCOMPARE(batch.take(), (QList{at("/a/x")}));
}

void tst_EventBatch::aTreeStandsForWhatCameBeforeAndAfter() {
    EventBatch batch;
    batch.add("/a/f/x", 0);
    batch.add("/a/f/deep/y", FileEvent::created);
    batch.addTree("/a/f", 0);
    batch.add("/a/f/z", FileEvent::created);
    batch.addTree("/a/f", FileEvent::created);
    batch.add("/a/f/deep/er", 0);
    QCOMPARE(batch.take(), (QList{at("/a/f", FileEvent::created)}));
}

void tst_EventBatch::aTreeCoversOnlyWhatIsBelow() {
    EventBatch batch;
    batch.addTree("/a/f", FileEvent::renamed);
    batch.add("/a/f.mp4", 0);
    batch.add("/a/f-2/x", 0);
    batch.add("/a/f0", 0);
    batch.add("/a", 0);
    QCOMPARE(batch.take(),
             (QList{at("/a"), at("/a/f", FileEvent::renamed), at("/a/f-2/x"), at("/a/f.mp4"), at("/a/f0")}));
}

void tst_EventBatch::aTreeInsideATreeIsCovered() {
    EventBatch batch;
    batch.addTree("/a/f/in", FileEvent::created);
    batch.addTree("/a/f", FileEvent::renamed);
    batch.addTree("/a/f/other", FileEvent::created);
    QCOMPARE(batch.take(), (QList{at("/a/f", FileEvent::renamed)}));
}

void tst_EventBatch::theRootFolderIsATree() {
    EventBatch batch;
    batch.add("/x", 0);
    batch.addTree("/", FileEvent::mustScan);
    batch.add("/y/z", 0);
    QCOMPARE(batch.take(), (QList{at("/", FileEvent::mustScan)}));
}

void tst_EventBatch::aDroppedTreeHidesNothingLater() {
    EventBatch batch;
    batch.addTree("/a/f/in", FileEvent::created);
    batch.addTree("/a/f", FileEvent::renamed);
    batch.add("/b", 0);
    batch.drop("/a");
    batch.add("/a/f/in/x", 0);
    QCOMPARE(batch.take(), (QList{at("/a/f/in/x"), at("/b")}));
}

QTEST_APPLESS_MAIN(tst_EventBatch)
#include "tst_eventbatch.moc"
