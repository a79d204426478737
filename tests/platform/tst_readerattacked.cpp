// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HostileReader.h"
#include "support/ReaderProcesses.h"
#include "support/TestHome.h"

#include <QtTest>

#include <signal.h>

#include <functional>

using namespace lumbra;

namespace {

constexpr QSize box(64, 64);

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

class tst_ReaderAttacked : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(QFile::exists(QString::fromUtf8(hostileProgram()))); }

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

private:
    const Location& fine() const { return m_fine; }

    TestHome m_home;
    const Location m_fine = m_home.file("fine", "fine");
};

QTEST_GUILESS_MAIN(tst_ReaderAttacked)
#include "tst_readerattacked.moc"
