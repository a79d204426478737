// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HostileReader.h"
#include "support/ReaderProcesses.h"
#include "support/TestHome.h"

#include <QImage>
#include <QtTest>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace lumbra;

namespace {

constexpr QSize box(64, 64);

} // namespace

class tst_Reader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!qEnvironmentVariableIsEmpty("LUMBRA_READER"), "set LUMBRA_READER to the reader's path");
        QVERIFY(QFile::exists(QString::fromUtf8(hostileProgram())));
    }

    void aPictureComesBackInsideItsBox() {
        Reader reader;
        const Location file = picture("wide.png", {400, 200}, Qt::red);
        const QImage image = resultOf(reader.thumbnail(file, box));
        QCOMPARE(image.size(), QSize(64, 32));
        QCOMPARE(image.pixelColor(10, 10), QColor(Qt::red));
        QCOMPARE(image.format(), QImage::Format_RGB32);
    }

    void transparencyComesBack() {
        Reader reader;
        const QImage image = resultOf(reader.thumbnail(picture("clear.png", {8, 8}, QColor(0, 255, 0, 128)), box));
        QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 128);
    }

    void withoutItsPluginsAReaderReadsTheRest() {
        const Location alone = m_home.path().child("lumbra-reader");
        QVERIFY(QFile::copy(QString::fromUtf8(Reader::installedProgram()), alone.toString()));
        Reader reader({.program = alone.path()});
        for (const char* const head : {"\0\0\0\x18"
                                       "ftypisom",
                                       "\0\0\0\x18"
                                       "ftypheic"}) {
            const Location file = m_home.file("foreign", QByteArray(head, 12));
            QVERIFY(resultOf(reader.thumbnail(file, box)).isNull());
        }
        QCOMPARE(resultOf(reader.thumbnail(picture("plain.png", {8, 8}, Qt::red), box)).size(), QSize(8, 8));
        QCOMPARE(reader.startedCount(), size_t(1)); // none has come to grief
    }

    void theAnswerReachesItsContext() {
        Reader reader;
        QImage image;
        reader.thumbnail(picture("told.png", {8, 8}, Qt::blue), box).then(this, [&image](const QImage& told) {
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            image = told;
        });
        QTRY_VERIFY(!image.isNull());
    }

    // Readers that were quick are asked ahead; what waits for one that is not is read by the other.
    void whatWaitsForASlowReaderGoesToAnother() {
        Reader reader({.children = 2, .limit = 60, .program = hostileProgram()});
        const auto readFine = [&reader, this] {
            QList<QFuture<QImage>> futures;
            for (int i = 0; i < 20; ++i)
                futures.append(reader.thumbnail(fine(), box));
            for (const QFuture<QImage>& future : futures)
                QTRY_VERIFY(future.isFinished());
        };
        readFine();
        std::stop_source stop;
        QFuture<QImage> stalled =
            reader.thumbnail(m_home.file("stalling", "stall"), box, Reader::Urgency::visible, stop.get_token());
        readFine();
        QVERIFY(!stalled.isFinished());
        QCOMPARE(reader.startedCount(), size_t(2));
        stop.request_stop();
    }

    void whatIsTakenBackWhileItWaitsForAReaderIsNotRead() {
        Reader reader(hostile(60));
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        std::stop_source first, second;
        QFuture<QImage> working =
            reader.thumbnail(m_home.file("obeying", "obey"), box, Reader::Urgency::visible, first.get_token());
        QFuture<QImage> waiting =
            reader.thumbnail(m_home.file("bad", "crash"), box, Reader::Urgency::later, second.get_token());
        second.request_stop();
        QTRY_VERIFY(waiting.isFinished());
        first.request_stop();
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QCOMPARE(reader.startedCount(), size_t(1));
    }

    void aCancelledRequestInTheQueueIsDropped() {
        Reader reader(hostile(2));
        std::stop_source stop;
        QFuture<QImage> running = reader.thumbnail(m_home.file("stalling", "stall"), box);
        QFuture<QImage> queued =
            reader.thumbnail(m_home.file("bad", "crash"), box, Reader::Urgency::later, stop.get_token());
        stop.request_stop();
        resultOf(running);
        QCOMPARE(resultOf(reader.thumbnail(fine(), box, Reader::Urgency::later)).size(), QSize(1, 1));
        QCOMPARE(reader.startedCount(), size_t(2)); // the stalled one and its successor, but none for the crash
        QVERIFY(queued.isFinished());
        QVERIFY(!queued.isResultReadyAt(0));
    }

    // Its reader would be busy for a minute.
    void aCancelledRequestAtWorkMakesRoom() {
        Reader reader(hostile(60));
        std::stop_source stop;
        QFuture<QImage> stalled =
            reader.thumbnail(m_home.file("stalling", "stall"), box, Reader::Urgency::visible, stop.get_token());
        QTRY_COMPARE(reader.startedCount(), size_t(1));
        QFuture<QImage> next = reader.thumbnail(fine(), box, Reader::Urgency::later);
        stop.request_stop();
        QTRY_VERIFY(next.isFinished());
        QCOMPARE(next.result().size(), QSize(1, 1));
        QVERIFY(!stalled.isResultReadyAt(0));
    }

    // It need not be ended, so it keeps what it has open.
    void aCancelledRequestAtWorkIsStopped() {
        Reader reader(hostile(60));
        std::stop_source stop;
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        const auto before = childProcesses();
        QFuture<QImage> running =
            reader.thumbnail(m_home.file("obeying", "obey"), box, Reader::Urgency::visible, stop.get_token());
        QFuture<QImage> next = reader.thumbnail(fine(), box, Reader::Urgency::later);
        QVERIFY(!next.isFinished());
        stop.request_stop();
        QTRY_VERIFY(next.isFinished());
        QCOMPARE(next.result().size(), QSize(1, 1));
        QCOMPARE(childProcesses(), before);
        QVERIFY(!running.isResultReadyAt(0));
    }

    void anAnswerNobodyWaitsForIsThrownAway() {
        Reader reader(hostile());
        std::stop_source stop;
        bool isTold = false;
        reader.thumbnail(fine(), box, Reader::Urgency::visible, stop.get_token()).then(this, [&isTold](const QImage&) {
            isTold = true;
        });
        stop.request_stop();
        QImage last;
        reader.thumbnail(fine(), box).then(this, [&last](const QImage& image) { last = image; });
        QTRY_COMPARE(last.size(), QSize(1, 1));
        QVERIFY(!isTold);
    }

    void theVisibleAndAmongThemTheLastComeFirst() {
        Reader reader(hostile());
        QList<int> order;
        std::stop_source stop;
        const QFuture<QImage> holding =
            reader.thumbnail(m_home.file("stalling", "stall"), box, Reader::Urgency::visible, stop.get_token());
        const auto ask = [&](int number, Reader::Urgency urgency) {
            return QFuture<QImage>(reader.thumbnail(fine(), box, urgency)).then([&order, number](const QImage&) {
                order.append(number);
            });
        };
        const QList<QFuture<void>> asked{ask(1, Reader::Urgency::later), ask(2, Reader::Urgency::visible),
                                         ask(3, Reader::Urgency::soon), ask(4, Reader::Urgency::visible)};
        stop.request_stop();
        for (QFuture<void> future : asked)
            future.waitForFinished();
        QCOMPARE(order, (QList<int>{4, 2, 3, 1}));
    }

    void processesStartOnlyWhenTheyAreNeeded() {
        Reader reader;
        QCOMPARE(reader.startedCount(), size_t(0));
        reader.warmUp();
        QTRY_COMPARE(reader.startedCount(), size_t(2));
    }

    void processesEndWithTheReader() {
        const auto before = childProcesses().size();
        {
            Reader reader;
            reader.warmUp();
            QTRY_COMPARE(childProcesses().size(), before + 2);
        }
        QTRY_COMPARE(childProcesses().size(), before);
    }

    void processesWithoutWorkEndWhereTheyShould() {
        const auto before = childProcesses().size();
        Reader reader({.idleLimit = 0.05, .program = hostileProgram()});
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QTRY_COMPARE(childProcesses().size(), before);
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
    }

    void requestsOfAReaderThatEndsAreCancelled() {
        QFuture<QImage> running, queued;
        {
            Reader reader(hostile());
            running = reader.thumbnail(m_home.file("stalling", "stall"), box);
            queued = reader.thumbnail(fine(), box, Reader::Urgency::later);
        }
        QVERIFY(running.isCanceled() && running.isFinished());
        QVERIFY(queued.isCanceled() && queued.isFinished());
    }

    void readersYieldToTheWindowAndIdleOnesToEverybody_data() {
        QTest::addColumn<bool>("isIdle");
        QTest::newRow("somebody looks") << false;
        QTest::newRow("nobody looks") << true;
    }
    void readersYieldToTheWindowAndIdleOnesToEverybody() {
        QFETCH(bool, isIdle);
        Reader reader({.children = 1, .idlePriority = isIdle, .program = hostileProgram()});
        const auto before = childProcesses();
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QList<pid_t> started = childProcesses();
        started.removeIf([&before](pid_t process) { return before.contains(process); });
        QCOMPARE(started.size(), 1);
        QCOMPARE(::sched_getscheduler(started.first()), isIdle ? SCHED_IDLE : SCHED_OTHER);
        QCOMPARE(::getpriority(PRIO_PROCESS, id_t(started.first())), std::max(::getpriority(PRIO_PROCESS, 0), 10));
    }

    void whatIsNoRegularFileReadsAsNothing_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << QStringLiteral("missing.png");
        QTest::newRow("a folder") << QStringLiteral("folder.png");
        QTest::newRow("a pipe nobody writes to") << QStringLiteral("pipe.png");
        QTest::newRow("empty") << QStringLiteral("empty.png");
        QTest::newRow("a path longer than there are") << QString(20'000, QLatin1Char('a'));
    }

    void whatIsNoRegularFileReadsAsNothing() {
        QFETCH(QString, name);
        m_home.folder("folder.png");
        m_home.file("empty.png", "");
        const Location pipe = m_home.path().child("pipe.png");
        ::mkfifo(pipe.path().constData(), 0600);
        Reader reader;
        QVERIFY(resultOf(reader.thumbnail(m_home.path().child(QStringView(name)), box)).isNull());
        QCOMPARE(resultOf(reader.thumbnail(picture("after.png", {8, 8}, Qt::red), box)).size(), QSize(8, 8));
        QCOMPARE(reader.startedCount(), size_t(1));
    }

    void aRelativePathReadsAsNothing() {
        Reader reader(hostile());
        QVERIFY(resultOf(reader.thumbnail(Location(QByteArray("fine")), box)).isNull());
        QVERIFY(resultOf(reader.thumbnail(Location(), box)).isNull());
        QCOMPARE(reader.startedCount(), size_t(0));
    }

    // A thousand requests, most taken back, as in a long scroll.
    void aLongScrollLeavesOnlyWhatIsStillWanted() {
        Reader reader(hostile());
        QList<QFuture<QImage>> futures;
        std::vector<std::stop_source> stops(1000);
        for (size_t i = 0; i < stops.size(); ++i) {
            futures.append(reader.thumbnail(fine(), box, Reader::Urgency::visible, stops[i].get_token()));
            if (i >= 20)
                stops[i - 20].request_stop();
        }
        for (qsizetype i = futures.size() - 20; i < futures.size(); ++i)
            QCOMPARE(resultOf(futures[i]).size(), QSize(1, 1));
        for (QFuture<QImage>& future : futures)
            QTRY_VERIFY(future.isFinished());
    }

private:
    Location picture(const char* name, QSize size, const QColor& colour) {
        QImage image(size, colour.alpha() < 255 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        image.fill(colour);
        const Location file = m_home.path().child(name);
        if (!image.save(file.toString()))
            qFatal("cannot save %s", name);
        return file;
    }

    const Location& fine() const { return m_fine; }

    TestHome m_home;
    const Location m_fine = m_home.file("fine", "fine");
};

QTEST_GUILESS_MAIN(tst_Reader)
#include "tst_reader.moc"
