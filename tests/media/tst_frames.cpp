// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Frames.h"
#include "support/FilmClips.h"
#include "support/HostileReader.h"

#include <QtTest>

using namespace lumbra;

namespace {

Asset assetAt(const Location& file, double modified = 1700000000) {
    return {.url = file, .kind = AssetKind::video, .size = 1, .modified = {modified}, .starred = {}};
}

// What one request yielded, if it has.
struct Outcome {
    int calls = 0;
    QList<QImage> strip = {};

    Frames::Ready ready() {
        return [this](const QList<QImage>& made) {
            ++calls;
            strip = made;
        };
    }
};

} // namespace

class tst_Frames : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_short = counted("short.mp4", 2, "-c:v libx264"); }

    void init() {
        m_reader = std::make_unique<Reader>();
        m_frames = std::make_unique<Frames>(*m_reader);
    }

    void cleanup() {
        m_frames.reset();
        m_reader.reset();
    }

    // 2.5, 7.5, ... 57.5 seconds; key frames are ten seconds apart, at none of them.
    void twelveFramesOfAMinuteAreFromTheMiddlesOfTheirSlices() {
        const Asset asset = assetAt(counted("minute.mp4", 60, "-c:v libx264 -preset ultrafast -g 100"));
        const QList<QImage> strip = stripOf(asset, 12, 320);
        QCOMPARE(strip.size(), 12);
        const QList<int> numbers = numbersIn(strip);
        for (int i = 0; i < 12; ++i) {
            const double wanted = 2.5 + 5 * i, shown = numbers[i] / 10.0;
            QVERIFY2(shown + 0.1 >= wanted - 0.5 && shown <= wanted + 0.5,
                     qPrintable(QStringLiteral("%1 for %2").arg(shown).arg(wanted)));
        }
    }

    void framesAreAsLargeAsTheFilmInsideTheLimit() {
        const Asset large = assetAt(make("large.mp4", counting(1, 10, "1280:720")));
        QCOMPARE(stripOf(large, 2, 320).value(0).size(), QSize(320, 180));
        const Asset small = assetAt(make("small.mp4", counting(1, 10, "96:64")));
        QCOMPARE(stripOf(small, 2, 320).value(0).size(), QSize(96, 64));
    }

    void framesOfATurnedFilmAreUpright() {
        const Location file = make("turned.mp4", QStringLiteral("-i short.mp4 -c copy -metadata:s:v rotate=90"));
        QCOMPARE(stripOf(assetAt(file), 3, 320).value(2).size(), QSize(180, 320));
    }

    void whatIsKnownComesAtOnceWhateverItsSize() {
        const Asset asset = assetAt(counted("known.mp4", 1, "-c:v libx264"));
        const QList<QImage> made = stripOf(asset, 4, 320);
        QCOMPARE(made.size(), 4);
        QVERIFY(QFile::remove(asset.url.toString()));
        Outcome outcome;
        const auto request = m_frames->stripFor(asset, 4, 100, this, outcome.ready());
        QCOMPARE(outcome.calls, 1);
        QCOMPARE(outcome.strip, made);
    }

    void anotherCountIsAnotherStrip() {
        QCOMPARE(stripOf(assetAt(m_short), 4, 320).size(), 4);
        QCOMPARE(stripOf(assetAt(m_short), 5, 320).size(), 5);
    }

    void aRewrittenFileGetsANewStrip() {
        const Location file = counted("rewritten.mp4", 1, "-c:v libx264");
        QCOMPARE(stripOf(assetAt(file, 1), 2, 320)[0].size(), QSize(320, 180));
        make("rewritten.mp4", counting(1, 10, "160:90"));
        QCOMPARE(stripOf(assetAt(file, 2), 2, 320)[0].size(), QSize(160, 90));
    }

    void the61stStripDropsTheFirst() {
        for (int i = 1; i <= Frames::limit; ++i)
            QCOMPARE(stripOf(assetAt(m_short, i), 1, 64).size(), 1);
        QVERIFY(isKnown(assetAt(m_short, 1)));
        stripOf(assetAt(m_short, 61), 1, 64);
        QVERIFY(!isKnown(assetAt(m_short, 1)));
        QVERIFY(isKnown(assetAt(m_short, 2)));
        QVERIFY(isKnown(assetAt(m_short, 61)));
    }

    // Being looked at again does not keep a strip: what came first goes first.
    void theOldestGoesEvenIfItWasUsedLast() {
        for (int i = 1; i <= Frames::limit; ++i)
            stripOf(assetAt(m_short, i), 1, 64);
        stripOf(assetAt(m_short, 1), 1, 64);
        stripOf(assetAt(m_short, 61), 1, 64);
        QVERIFY(!isKnown(assetAt(m_short, 1)));
    }

    void twoThatAskAtTheSameTimeTakeOnePlace() {
        Outcome first, second;
        const auto one = m_frames->stripFor(assetAt(m_short, 1), 1, 64, this, first.ready());
        const auto two = m_frames->stripFor(assetAt(m_short, 1), 1, 64, this, second.ready());
        QTRY_COMPARE(first.calls + second.calls, 2);
        for (int i = 2; i <= Frames::limit; ++i)
            stripOf(assetAt(m_short, i), 1, 64);
        QVERIFY(isKnown(assetAt(m_short, 1)));
        stripOf(assetAt(m_short, 61), 1, 64);
        QVERIFY(!isKnown(assetAt(m_short, 1)));
        QVERIFY(isKnown(assetAt(m_short, 2)));
    }

    void whatTellsNoLengthHasNoStripAndIsNotRemembered() {
        const Location file = home().file("later.mp4", "no film");
        QVERIFY(stripOf(assetAt(file), 4, 320).isEmpty());
        counted("later.mp4", 1, "-c:v libx264"); // the same file at the same date
        QCOMPARE(stripOf(assetAt(file), 4, 320).size(), 4);
    }

    void soundHasNoStrip() {
        QVERIFY(stripOf(assetAt(make("sound.m4a", QStringLiteral("-f lavfi -i sine=d=1"))), 4, 320).isEmpty());
    }

    void noFramesAreNone() { QVERIFY(stripOf(assetAt(m_short), 0, 320).isEmpty()); }

    void aFilmCutShortYieldsWhatItHolds() {
        const QByteArray film =
            bytes(make("whole.mp4", counting(10, 10) + QStringLiteral(" -c:v libx264 -g 10 -movflags faststart")));
        const qsizetype frames =
            stripOf(assetAt(home().file("cut.mp4", film.left(film.size() * 6 / 10))), 12, 320).size();
        QVERIFY2(frames >= 4 && frames <= 9, qPrintable(QString::number(frames)));
    }

    void aRequestThatIsDroppedAnswersNobody() {
        Outcome outcome;
        { const auto request = m_frames->stripFor(assetAt(m_short, 1), 12, 320, this, outcome.ready()); }
        QCOMPARE(stripOf(assetAt(m_short, 2), 2, 320).size(), 2);
        QCOMPARE(outcome.calls, 0);
        QVERIFY(!isKnown(assetAt(m_short, 1)));
    }

    void aStripThatTimeCutShortIsShownButNotRemembered() {
        Reader hasty({.children = 1, .program = hostileProgram()});
        Frames frames(hasty);
        const Asset asset = assetAt(home().file("long.mp4", "break off"));
        for (int asked = 0; asked < 2; ++asked) {
            Outcome outcome;
            const auto request = frames.stripFor(asset, 12, 320, this, outcome.ready());
            QCOMPARE(outcome.calls, 0);
            QTRY_COMPARE(outcome.calls, 1);
            QCOMPARE(outcome.strip.size(), 1);
        }
    }

    void aReaderThatStallsYieldsNoStrip() {
        Reader stalling({.children = 1, .limit = 0.2, .program = hostileProgram()});
        Frames frames(stalling);
        Outcome outcome;
        const auto request =
            frames.stripFor(assetAt(home().file("stall.mp4", "stall")), 12, 320, this, outcome.ready());
        QTRY_COMPARE(outcome.calls, 1);
        QVERIFY(outcome.strip.isEmpty());
    }

private:
    QList<QImage> stripOf(const Asset& asset, int count, int maxSide) {
        Outcome outcome;
        const auto request = m_frames->stripFor(asset, count, maxSide, this, outcome.ready());
        [&] { QTRY_COMPARE(outcome.calls, 1); }();
        return outcome.strip;
    }

    // The strip of one frame is there without waiting.
    bool isKnown(const Asset& asset) {
        Outcome outcome;
        const auto request = m_frames->stripFor(asset, 1, 64, this, outcome.ready());
        return outcome.calls == 1;
    }

    Location m_short;
    std::unique_ptr<Reader> m_reader;
    std::unique_ptr<Frames> m_frames;
};

QTEST_GUILESS_MAIN(tst_Frames)
#include "tst_frames.moc"
