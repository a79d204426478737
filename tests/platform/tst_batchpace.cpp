// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/events/BatchPace.h"

#include <QTest>

#include <sys/inotify.h>

using namespace lumbra;
using events::BatchPace;
using namespace std::chrono_literals;

class tst_BatchPace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstBatchOfAQuietTimeLeavesAtOnce();
    void whatWaitsLeavesAtTheWindowsEnd();
    void afterAWindowWithNothingItIsQuietAgain();
    void theClosingOfTheFirstFileLeavesAtOnce();
    void itsMoveToItsNameLeavesAtOnce();
    void eachWayLeavesOnce();
    void whatComesInTheWindowWaitsHoweverItEnds();
    void aBurstThatGoesOnWaitsForNoFile();
    void ofManyFilesAtOnceNoneLeavesAlone();
    void anEndedWindowIsAQuietTime();

private:
    // As the thread does it: reads these events at this time, with nothing left from before.
    void read(std::initializer_list<std::pair<const char*, quint32>> events) {
        m_pace.advance(m_now, m_isWaiting);
        for (const auto& [path, mask] : events)
            m_pace.note(path, mask);
        m_isWaiting = m_isWaiting || events.size() > 0;
    }

    // Whether they leave.
    bool leave() {
        if (!m_isWaiting || !m_pace.mayLeave())
            return false;
        m_pace.left(m_now);
        m_isWaiting = false;
        return true;
    }

    BatchPace m_pace{400ms};
    BatchPace::Clock::time_point m_now{1h};
    bool m_isWaiting = false;

private Q_SLOTS:
    void init() {
        m_pace.endWindow();
        m_isWaiting = false;
        m_now += 1h;
    }
};

void tst_BatchPace::theFirstBatchOfAQuietTimeLeavesAtOnce() {
    read({{"/a", IN_MOVED_TO}});
    QVERIFY(leave());
    QCOMPARE(m_pace.windowEnd(), std::optional(m_now + 400ms));
}

void tst_BatchPace::whatWaitsLeavesAtTheWindowsEnd() {
    read({{"/a", IN_MOVED_TO}});
    QVERIFY(leave());
    m_now += 399ms;
    read({{"/b", IN_MOVED_TO}});
    QVERIFY(!leave());
    m_now += 1ms;
    read({});
    QVERIFY(leave());
    QCOMPARE(m_pace.windowEnd(), std::optional(m_now + 400ms));
}

void tst_BatchPace::afterAWindowWithNothingItIsQuietAgain() {
    read({{"/a", IN_MOVED_TO}});
    QVERIFY(leave());
    m_now += 400ms;
    read({});
    QVERIFY(!m_pace.windowEnd());
    read({{"/b", IN_MOVED_TO}});
    QVERIFY(leave());
}

void tst_BatchPace::theClosingOfTheFirstFileLeavesAtOnce() {
    read({{"/a", IN_CREATE}, {"/a", IN_ATTRIB}});
    QVERIFY(leave());
    m_now += 10ms;
    read({{"/a", IN_MODIFY}, {"/a", IN_MODIFY}});
    QVERIFY(!leave());
    m_now += 10ms;
    read({{"/a", IN_CLOSE_WRITE}});
    QVERIFY(leave());
    QCOMPARE(m_pace.windowEnd(), std::optional(m_now + 400ms));
}

void tst_BatchPace::itsMoveToItsNameLeavesAtOnce() {
    read({{"/a.part", IN_CREATE}, {"/a.part", IN_MODIFY}, {"/a.part", IN_CLOSE_WRITE}});
    QVERIFY(leave());
    m_now += 1ms;
    read({{"/a.part", IN_MOVED_FROM}, {"/a", IN_MOVED_TO}});
    QVERIFY(leave());
}

void tst_BatchPace::eachWayLeavesOnce() {
    read({{"/a", IN_CREATE}});
    QVERIFY(leave());
    read({{"/a", IN_CLOSE_WRITE}});
    QVERIFY(leave());
    // The same file once more, as a render that rewrites it does a hundred times.
    read({{"/a", IN_MODIFY}, {"/a", IN_CLOSE_WRITE}});
    QVERIFY(!leave());
    m_now += 400ms;
    read({});
    QVERIFY(leave());
}

void tst_BatchPace::whatComesInTheWindowWaitsHoweverItEnds() {
    read({{"/a", IN_CREATE}});
    QVERIFY(leave());
    read({{"/a", IN_CLOSE_WRITE}, {"/b", IN_CREATE}});
    QVERIFY(leave());
    read({{"/b", IN_CLOSE_WRITE}});
    QVERIFY(!leave());
    read({{"/b", IN_MOVED_FROM}, {"/c", IN_MOVED_TO}});
    QVERIFY(!leave());
}

void tst_BatchPace::aBurstThatGoesOnWaitsForNoFile() {
    read({{"/a", IN_CREATE}});
    QVERIFY(leave());
    read({{"/b", IN_CREATE}});
    QVERIFY(!leave());
    m_now += 500ms;
    read({{"/c", IN_CREATE}});
    QVERIFY(leave());
    read({{"/a", IN_CLOSE_WRITE}, {"/b", IN_CLOSE_WRITE}, {"/c", IN_CLOSE_WRITE}});
    QVERIFY(!leave());
}

void tst_BatchPace::ofManyFilesAtOnceNoneLeavesAlone() {
    read({{"/a", IN_CREATE}, {"/b", IN_CREATE}, {"/c", IN_CREATE}, {"/d", IN_CREATE}, {"/e", IN_CREATE}});
    QVERIFY(leave());
    read({{"/a", IN_CLOSE_WRITE}});
    QVERIFY(!leave());
}

void tst_BatchPace::anEndedWindowIsAQuietTime() {
    read({{"/a", IN_CREATE}});
    QVERIFY(leave());
    read({{"/b", IN_CREATE}});
    QVERIFY(!leave());
    m_pace.endWindow();
    QVERIFY(leave());
    QCOMPARE(m_pace.windowEnd(), std::optional(m_now + 400ms));
}

QTEST_APPLESS_MAIN(tst_BatchPace)
#include "tst_batchpace.moc"
