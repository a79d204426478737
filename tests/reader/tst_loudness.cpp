// SPDX-License-Identifier: GPL-3.0-or-later
#include "reader/OpenedFile.h"
#include "reader/media/Loudness.h"
#include "support/FilmClips.h"

#include <QtTest>

#include <numbers>
#include <numeric>

using namespace lumbra;
using namespace lumbra::reader;
using namespace std::chrono_literals;

namespace {

using Samples = std::vector<qint16>;

QList<float> barsOf(const Samples& samples, int slices) {
    SliceSums sums(slices, qint64(samples.size()));
    sums.add(samples);
    return sums.rootMeanSquares();
}

Samples noise(size_t count) {
    Samples samples(count);
    quint32 state = 7;
    for (qint16& sample : samples) {
        state = state * 1664525 + 1013904223;
        sample = qint16(state >> 16);
    }
    return samples;
}

// Each slice by itself, in double precision.
QList<double> slowly(const Samples& samples, int slices) {
    const qint64 count = qint64(samples.size()), step = std::max<qint64>(1, count / slices);
    QList<double> values;
    for (qint64 i = 0; i < slices; ++i) {
        const qint64 begin = std::min(i * step, count - 1), end = std::min((i + 1) * step, count);
        double sum = 0;
        for (qint64 at = begin; at < end; ++at)
            sum += double(samples[size_t(at)]) * samples[size_t(at)];
        values.append(std::sqrt(sum / double(std::max<qint64>(1, end - begin))));
    }
    return values;
}

QList<float> loudnessOf(const Location& file, int slices) {
    const auto opened = OpenedFile::open(file.path());
    return opened ? loudness(*opened, slices, 60s) : QList<float>();
}

float mean(const QList<float>& values, qsizetype from, qsizetype to) {
    return std::accumulate(values.begin() + from, values.begin() + to, 0.0F) / float(to - from);
}

} // namespace

class tst_Loudness : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void slicesAreAsLongAsFitsSoOften_data() {
        QTest::addColumn<int>("samples");
        QTest::addColumn<int>("slices");
        QTest::newRow("as many as slices") << 140 << 140;
        QTest::newRow("one more") << 141 << 140;
        QTest::newRow("one less") << 139 << 140;
        QTest::newRow("a remainder that belongs to none") << 1399 << 140;
        QTest::newRow("one slice") << 1000 << 1;
        QTest::newRow("one sample") << 1 << 140;
        QTest::newRow("ten samples") << 10 << 140;
        QTest::newRow("a second") << 8000 << 140;
        QTest::newRow("many") << 1'000'003 << 140;
    }

    void slicesAreAsLongAsFitsSoOften() {
        QFETCH(int, samples);
        QFETCH(int, slices);
        const Samples sound = noise(size_t(samples));
        const QList<float> bars = barsOf(sound, slices);
        const QList<double> expected = slowly(sound, slices);
        QCOMPARE(bars.size(), slices);
        for (qsizetype i = 0; i < bars.size(); ++i)
            QVERIFY(std::abs(bars[i] - expected[i]) <= 1e-6 * expected[i]);
    }

    void slicesBeyondAVeryShortSoundHoldItsLastSample() {
        const QList<float> bars = barsOf({1, 2, 3, 4, 5, 6, 7, 8, 9, -10}, 140);
        QCOMPARE(bars.size(), 140);
        QCOMPARE(bars[0], 1.0F);
        QCOMPARE(bars[9], 10.0F);
        QCOMPARE(bars[10], 10.0F);
        QCOMPARE(bars[139], 10.0F);
    }

    void theLoudestSamplesDoNotOverflow() {
        QCOMPARE(barsOf(Samples(100'000, -32768), 2), (QList<float>{32768, 32768}));
    }

    void itDoesNotMatterInWhichPiecesTheSoundComes() {
        const Samples sound = noise(10'007);
        SliceSums sums(7, qint64(sound.size()));
        size_t at = 0;
        for (size_t piece = 1; at < sound.size(); piece = piece * 3 % 1009) {
            const size_t count = std::min(piece, sound.size() - at);
            sums.add(std::span(sound).subspan(at, count));
            at += count;
        }
        QCOMPARE(sums.rootMeanSquares(), barsOf(sound, 7));
    }

    // A second of silence, then a second of a tone.
    void everyFormatOfSoundIsHeard_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("encoding");
        const auto row = [](const char* name, const char* encoding = "-ac 2") {
            QTest::newRow(name) << QByteArray(name) << QByteArray(encoding);
        };
        row("sound.mp3");
        row("sound.m4a");
        row("sound.aac");
        row("sound.flac");
        row("sound.ogg", "-ac 2 -c:a libvorbis");
        row("sound.opus", "-ac 2 -c:a libopus");
        row("sound.wav");
        row("float.wav", "-c:a pcm_f32le -ac 6");
        row("sound.aiff");
        row("sound.caf");
        row("sound.wma");
        row("sound.ac3");
        row("sound.mka", "-c:a libvorbis -ac 2");
        row("sound.weba", "-c:a libopus -ac 2 -f webm");
        row("sound.au", "-ar 8000");
    }

    void everyFormatOfSoundIsHeard() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, encoding);
        const Location file = make(
            name.constData(), QStringLiteral("-f lavfi -i aevalsrc=exprs=0.5*sin(2*PI*440*t)*gte(t\\,1):s=48000:d=2 ")
                                  + QLatin1String(encoding));
        const QList<float> bars = loudnessOf(file, 20);
        QCOMPARE(bars.size(), 20);
        const float quiet = mean(bars, 0, 8), loud = mean(bars, 12, 18);
        QVERIFY2(loud > 1000 && quiet < loud / 10, qPrintable(QStringLiteral("%1, then %2").arg(quiet).arg(loud)));
    }

    // A sine's root mean square is its height over the root of two.
    void aToneIsAsLoudAsItIs() {
        const Location file =
            make("tone.wav", QStringLiteral("-f lavfi -i aevalsrc=exprs=0.5*sin(2*PI*440*t):s=8000:d=10"));
        for (const float bar : loudnessOf(file, 10))
            QVERIFY(std::abs(bar - 16384 / std::numbers::sqrt2_v<float>) < 20);
    }

    // What comes of decoding the whole sound at once.
    void theBarsAreThoseOfAllSamplesTogether() {
        const Location file =
            make("speech.wav", QStringLiteral("-f lavfi -i anoisesrc=d=30.0123:c=brown:s=3:r=44100 -ac 2"));
        make("speech.s16", QStringLiteral("-i speech.wav -ac 1 -ar 8000 -f s16le"));
        const QByteArray raw = bytes(home().path().child("speech.s16"));
        Samples samples(size_t(raw.size()) / 2);
        std::memcpy(samples.data(), raw.constData(), samples.size() * 2);
        const QList<float> bars = loudnessOf(file, 140);
        const QList<double> expected = slowly(samples, 140);
        for (qsizetype i = 0; i < bars.size(); ++i)
            QVERIFY2(std::abs(bars[i] - expected[i]) <= 0.01 * expected[i] + 2,
                     qPrintable(QStringLiteral("bar %1: %2, not %3").arg(i).arg(bars[i]).arg(expected[i])));
    }

    // Too long to be kept while it is heard.
    void threeHoursAreHeardTwice() {
        const Location file =
            make("long.flac", QStringLiteral("-f lavfi -i aevalsrc=exprs=0.5*gte(t\\,5400):s=8000:d=10800"
                                             " -compression_level 0"));
        const QList<float> bars = loudnessOf(file, 140);
        QCOMPARE(bars.size(), 140);
        QCOMPARE(bars[0], 0.0F);
        QCOMPARE(bars[69], 0.0F);
        QVERIFY(std::abs(bars[70] - 16384) < 2);
        QVERIFY(std::abs(bars[139] - 16384) < 2);
    }

    void theFirstSoundOfAFilmIsHeard() {
        const Location file = make("film.mkv", counting(2, 10)
                                                   + QStringLiteral(" -f lavfi -i sine=d=2 -f lavfi -i anullsrc=d=2"
                                                                    " -map 0 -map 1 -map 2 -shortest"));
        const QList<float> bars = loudnessOf(file, 4);
        QCOMPARE(bars.size(), 4);
        QVERIFY(bars[1] > 100);
    }

    void aFilmWithoutSoundHasNoBars() { QVERIFY(loudnessOf(counted("silent.mp4", 1, "-c:v libx264"), 140).isEmpty()); }

    void whatIsNoSoundHasNoBars() {
        QVERIFY(loudnessOf(home().file("no.mp3", "no sound"), 140).isEmpty());
        QVERIFY(loudnessOf(home().file("zeros.wav", QByteArray(10'000, '\0')), 140).isEmpty());
        QVERIFY(loudnessOf(home().file("empty.wav", ""), 140).isEmpty());
    }

    void aSoundOfNoSamplesHasNoBars() {
        const QByteArray header = bytes(make("header.wav", QStringLiteral("-f lavfi -i sine=d=0.1"))).left(78);
        QVERIFY(loudnessOf(home().file("headonly.wav", header), 140).isEmpty());
    }

    void aSoundCutShortIsHeardAsFarAsItGoes() {
        const QByteArray whole = bytes(make("whole.mp3", QStringLiteral("-f lavfi -i sine=d=10")));
        const QList<float> bars = loudnessOf(home().file("cut.mp3", whole.left(whole.size() / 2)), 10);
        QCOMPARE(bars.size(), 10);
        QVERIFY(bars[8] > 100);
    }

    void aSoundDamagedAtSeveralPlacesIsHeardAround() {
        QByteArray sound = bytes(make("damaged.m4a", QStringLiteral("-f lavfi -i sine=d=10 -movflags faststart")));
        for (qsizetype place = sound.size() / 5; place < sound.size(); place += sound.size() / 5)
            sound.replace(place, 40, QByteArray(40, 'x'));
        const QList<float> bars = loudnessOf(home().file("damaged2.m4a", sound), 10);
        QCOMPARE(bars.size(), 10);
        QVERIFY(std::count_if(bars.begin(), bars.end(), [](float bar) { return bar > 100; }) >= 5);
    }
};

QTEST_GUILESS_MAIN(tst_Loudness)
#include "tst_loudness.moc"
