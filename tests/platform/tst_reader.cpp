// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Reader.h"
#include "support/ReaderProcesses.h"
#include "support/TestHome.h"

#include <QImage>
#include <QtTest>

#include <signal.h>
#include <sys/stat.h>

#include <fstream>

using namespace lumbra;

namespace {

constexpr QSize box(64, 64);

QByteArray hostileProgram() {
    return QCoreApplication::applicationDirPath().toUtf8() + "/lumbra-reader-hostile";
}

// One process, so that the same one that came to grief, or its successor, must serve the next request.
Reader::Options hostile(double limit = 8) {
    return {.children = 1, .limit = limit, .program = hostileProgram()};
}

// What the future yields, waited for without a loop of its own.
QImage resultOf(QFuture<QImage> future) {
    future.waitForFinished();
    return future.isResultReadyAt(0) ? future.result() : QImage();
}

// Whether a reader that does what it should answers requests of the kind, and whether it reads anything in the file.
struct Asked {
    const char* kind;
    std::function<bool(Reader&, const Location&)> isAnswered;
};

const Asked requests[] = {
    {"a thumbnail",
     [](Reader& reader, const Location& file) { return !resultOf(reader.thumbnail(file, box)).isNull(); }},
    {"facts",
     [](Reader& reader, const Location& file) {
         QFuture<std::optional<Reader::MediaFacts>> facts = reader.mediaFacts(file);
         facts.waitForFinished();
         return facts.result().has_value();
     }},
    {"frames",
     [](Reader& reader, const Location& file) {
         QFuture<std::optional<Reader::Frames>> frames = reader.frames(file, {.moments = {1}, .box = box});
         frames.waitForFinished();
         return frames.result().has_value();
     }},
    {"loudness",
     [](Reader& reader, const Location& file) {
         QFuture<QList<float>> loudness = reader.loudness(file, 140);
         loudness.waitForFinished();
         return loudness.result().size() == 140;
     }},
    {"pages",
     [](Reader& reader, const Location& file) {
         QFuture<std::optional<Reader::Pages>> pages = reader.pages(file);
         pages.waitForFinished();
         return pages.result().has_value();
     }},
    {"a page",
     [](Reader& reader, const Location& file) {
         return !resultOf(reader.page(file, {.page = 0, .whole = {1, 1}, .part = {0, 0, 1, 1}})).isNull();
     }},
};

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

    void theAnswerReachesItsContext() {
        Reader reader;
        QImage image;
        reader.thumbnail(picture("told.png", {8, 8}, Qt::blue), box).then(this, [&image](const QImage& told) {
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            image = told;
        });
        QTRY_VERIFY(!image.isNull());
    }

    // Each row is a request at which the reader does its worst; it reads as nothing, and the next one is well.
    void aReaderThatMisbehavesCostsOneAnswer_data() {
        QTest::addColumn<int>("request");
        QTest::addColumn<QByteArray>("deed");
        QTest::addColumn<bool>("isReplaced");
        for (int request = 0; request < int(std::size(requests)); ++request) {
            const auto row = [request](const char* label, const char* deed, bool isReplaced) {
                QTest::addRow("asked for %s, %s", requests[request].kind, label)
                    << request << QByteArray(deed) << isReplaced;
            };
            row("exits", "exit", true);
            row("crashes", "crash", true);
            row("stalls", "stall", true);
            row("computes for ever", "spin", true);
            row("babbles", "babble", true);
            row("sends an empty message", "silence", true);
            row("sends more than a message may be", "shout", true);
            row("answers what was not asked", "other", true);
            row("greets instead of answering", "greet", true);
            row("claims more bytes than there are", "endless", true);
            row("claims a picture larger than its bytes", "huge", true);
            row("writes a file", "write", false);
            row("connects", "connect", false);
            row("runs a program", "run", false);
            row("shrinks the shared memory", "shrink", false);
            row("grows the shared memory", "grow", false);
            row("takes memory without an end", "hoard", false);
            row("signals its parent", "signal", false);
            row("looks into its parent", "look", false);
        }
    }

    void aReaderThatMisbehavesCostsOneAnswer() {
        QFETCH(int, request);
        QFETCH(QByteArray, deed);
        QFETCH(bool, isReplaced);
        const auto& isAnswered = requests[request].isAnswered;
        Reader reader(hostile(0.5));
        const Location bad = m_home.file("bad", deed);
        QVERIFY(isAnswered(reader, fine()));
        QVERIFY(!isAnswered(reader, bad));
        QVERIFY(isAnswered(reader, fine()));
        QCOMPARE(reader.startedCount(), size_t(isReplaced ? 2 : 1));
        QVERIFY(!QFile::exists(bad.toString() + QStringLiteral(".made")));
    }

    // It answers rightly and goes on answering: the next request may be hit as well, but not the one after.
    void aFloodIsCutOff() {
        Reader reader(hostile());
        resultOf(reader.thumbnail(m_home.file("bad", "flood"), box));
        resultOf(reader.thumbnail(fine(), box));
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QCOMPARE(reader.startedCount(), size_t(2));
    }

    // What was handed out is a copy, checked after it was made.
    void aReaderThatWritesOnAfterItsAnswerChangesNoPicture() {
        Reader reader(hostile(0.5));
        const QImage white = resultOf(reader.thumbnail(fine(), box));
        const QImage image = resultOf(reader.thumbnail(m_home.file("bad", "scribble"), box));
        QCOMPARE(image.size(), QSize(1, 1));
        const QImage before = image.copy();
        QVERIFY(resultOf(reader.thumbnail(fine(), box)).isNull()); // it scribbles meanwhile, until it is ended
        QCOMPARE(image, before);
        QCOMPARE(white.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
    }

    void aCrashIsNotTriedAgainAndTheQueueGoesOn() {
        Reader reader(hostile());
        const Location bad = m_home.file("bad", "crash");
        QList<QFuture<QImage>> futures;
        for (int i = 0; i < 20; ++i)
            futures.append(reader.thumbnail(i == 10 ? bad : fine(), box));
        for (int i = 0; i < futures.size(); ++i)
            QCOMPARE(resultOf(futures[i]).isNull(), i == 10);
        QCOMPARE(reader.startedCount(), size_t(2));
    }

    // Readers that were quick are asked ahead; what waits for one that is not is read by the other.
    void whatWaitsForASlowReaderGoesToAnother() {
        Reader reader({.children = 2, .limit = 60, .program = hostileProgram()});
        const auto readFine = [&reader, this] {
            QList<QFuture<QImage>> futures;
            for (int i = 0; i < 20; ++i)
                futures.append(reader.thumbnail(fine(), box));
            for (const QFuture<QImage>& future : futures)
                QTRY_VERIFY_WITH_TIMEOUT(future.isFinished(), 10'000);
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
        QTRY_VERIFY_WITH_TIMEOUT(next.isFinished(), 10'000);
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
        QTRY_VERIFY_WITH_TIMEOUT(next.isFinished(), 10'000);
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

    void aProcessThatIsKilledIsReplaced() {
        Reader reader(hostile());
        const auto before = childProcesses();
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        for (const pid_t process : childProcesses()) {
            if (!before.contains(process))
                ::kill(process, SIGKILL);
        }
        QTRY_COMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QCOMPARE(reader.startedCount(), size_t(2));
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

    void aMissingProgramReadsAsNothing() {
        Reader reader({.program = "/nowhere/lumbra-reader"});
        QVERIFY(resultOf(reader.thumbnail(fine(), box)).isNull());
        QVERIFY(resultOf(reader.thumbnail(fine(), box)).isNull());
        QCOMPARE(reader.startedCount(), size_t(1)); // and is not started over and over
    }

    void aProgramThatIsNoReaderReadsAsNothing() {
        Reader reader({.program = "/bin/true"});
        QVERIFY(resultOf(reader.thumbnail(fine(), box)).isNull());
        QVERIFY(reader.startedCount() <= 6);
    }

    void idleReadersYieldToEverybody() {
        Reader reader({.children = 1, .idlePriority = true, .program = hostileProgram()});
        const auto before = childProcesses();
        QCOMPARE(resultOf(reader.thumbnail(fine(), box)).size(), QSize(1, 1));
        QList<pid_t> started = childProcesses();
        started.removeIf([&before](pid_t process) { return before.contains(process); });
        QCOMPARE(started.size(), 1);
        QCOMPARE(::sched_getscheduler(started.first()), SCHED_IDLE);
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
