// SPDX-License-Identifier: GPL-3.0-or-later
#include "reader/Interruption.h"
#include "reader/media/FilmFrames.h"
#include "support/FilmClips.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cstdlib>
#include <memory>

using namespace lumbra;
using namespace lumbra::reader;
using namespace std::chrono_literals;

namespace {

constexpr QSize box(400, 400);
constexpr auto unlimited = 60s;

FramesWish inSeconds(QList<double> moments, double tolerance = 0) {
    return {.moments = std::move(moments), .tolerance = tolerance, .box = box};
}

// The middles of so many slices.
FramesWish strip(int count, double tolerance = 0.5) {
    FramesWish wish{.moments = {}, .unit = FramesWish::Unit::durations, .tolerance = tolerance, .box = box};
    for (int i = 0; i < count; ++i)
        wish.moments.append((i + 0.5) / count);
    return wish;
}

std::optional<QList<QImage>> framesOf(const Location& file, const FramesWish& wish) {
    auto opened = OpenedFile::open(file.path());
    const auto made = opened ? FilmFrames().make(std::move(opened), wish, unlimited) : std::nullopt;
    return made ? std::optional(made->images) : std::nullopt;
}

QList<int> numbersOf(const Location& file, const FramesWish& wish) {
    const auto frames = framesOf(file, wish);
    return frames ? FilmClips::numbersIn(*frames) : QList<int>{-1};
}

} // namespace

class tst_FilmFrames : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    // Six seconds, asked at four moments.
    void framesOfEveryFormatAreFromTheirMoments_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("encoding");
        const auto row = [](const char* label, const char* name, const char* encoding) {
            QTest::newRow(label) << QByteArray(name) << QByteArray(encoding);
        };
        row("H.264", "h264.mp4", "-c:v libx264");
        row("H.264 in key frames a second apart", "h264-keys.mp4", "-c:v libx264 -g 10");
        row("H.264 in Matroska", "h264.mkv", "-c:v libx264 -g 25");
        row("H.264 in a transport stream", "h264.ts", "-c:v libx264 -g 25");
        row("H.264 in Flash", "h264.flv", "-c:v libx264 -g 25");
        row("HEVC", "hevc.mp4", "-c:v libx265 -x265-params log-level=none -tag:v hvc1");
        row("VP8", "vp8.webm", "-c:v libvpx -deadline realtime");
        row("VP9", "vp9.webm", "-c:v libvpx-vp9 -deadline realtime -cpu-used 8");
        row("AV1", "av1.mp4", "-c:v libsvtav1 -preset 12");
        row("ProRes", "prores.mov", "-c:v prores_ks -pix_fmt yuv422p10le");
        row("Theora", "theora.ogv", "-c:v libtheora -q:v 8");
        row("MPEG-4 in AVI", "mpeg4.avi", "-c:v mpeg4 -q:v 3");
        row("MPEG-2", "mpeg2.mpg", "-c:v mpeg2video -q:v 3 -r 25");
        row("Windows Media", "wmv.wmv", "-c:v wmv2 -q:v 3");
        row("a live recording that does not tell its length", "live.webm", "-c:v libvpx -g 20 -f webm -live 1");
        row("a bare MPEG-2 stream", "bare.m2v", "-c:v mpeg2video -q:v 3 -r 25");
        row("MPEG-4 in pieces", "pieces.mp4", "-c:v libx264 -g 20 -movflags frag_keyframe+empty_moov");
        row("MXF", "mpeg2.mxf", "-c:v mpeg2video -q:v 3 -r 25");
        row("pictures one by one", "mjpeg.mov", "-c:v mjpeg -q:v 3");
    }

    void framesOfEveryFormatAreFromTheirMoments() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, encoding);
        const Location file = counted(name.constData(), 6, encoding.constData());
        constexpr double tolerance = 0.15;
        const QList<double> moments{0.55, 2.25, 3.95, 5.65, 1.15}; // the last one goes back
        const QList<int> numbers = numbersOf(file, inSeconds(moments, tolerance));
        QCOMPARE(numbers.size(), moments.size());
        for (qsizetype i = 0; i < moments.size(); ++i) {
            const double begin = numbers[i] / 10.0, end = begin + 0.1;
            QVERIFY2(begin <= moments[i] + tolerance + 0.045 && end >= moments[i] - tolerance - 0.045,
                     qPrintable(QStringLiteral("picture %1 at %2 s").arg(numbers[i]).arg(moments[i])));
        }
        QCOMPARE(numbersOf(file, strip(12)).size(), 12);
    }

    void withoutToleranceTheFrameIsTheOneThatIsSeen() {
        const Location file = counted("exact.mp4", 4, "-c:v libx264");
        QCOMPARE(numbersOf(file, inSeconds({0, 0.05, 0.1, 1.25, 3.99})), (QList<int>{0, 0, 1, 12, 39}));
    }

    void aKeyFrameInsideTheToleranceIsTaken() {
        const Location file = counted("keys.mp4", 6, "-c:v libx264 -g 10 -keyint_min 10 -sc_threshold 0 -bf 0");
        QCOMPARE(numbersOf(file, inSeconds({2.85, 4.25}, 0.5)), (QList<int>{30, 40}));
    }

    void ofTwoKeyFramesTheNearerIsTaken() {
        const Location file = counted("two.mp4", 6, "-c:v libx264 -g 5 -keyint_min 5 -sc_threshold 0 -bf 0");
        QCOMPARE(numbersOf(file, inSeconds({2.2}, 0.5)), (QList<int>{20}));
        QCOMPARE(numbersOf(file, inSeconds({2.3}, 0.5)), (QList<int>{25}));
    }

    void aKeyFrameOutsideTheToleranceIsNotTaken() {
        const Location file = counted("far.mp4", 6, "-c:v libx264 -g 20 -keyint_min 20 -sc_threshold 0");
        const QList<int> numbers = numbersOf(file, inSeconds({3.05}, 0.15));
        QCOMPARE(numbers.size(), 1);
        QVERIFY(numbers[0] >= 29 && numbers[0] <= 32);
    }

    void neighboursAreNeverTheSameFrameWhereTheFilmMoves() {
        const Location file = counted("short.mp4", 1.2, "-c:v libx264");
        const QList<int> numbers = numbersOf(file, strip(12));
        QCOMPARE(numbers.size(), 12);
        QCOMPARE(QSet<int>(numbers.begin(), numbers.end()).size(), 12);
    }

    void aFilmOfThreeTenthsOfASecondFillsItsStrip() {
        const Location file = counted("tiny.mp4", 0.3, "-c:v libx264");
        const QList<int> numbers = numbersOf(file, strip(12));
        QCOMPARE(numbers.size(), 12);
        QCOMPARE(numbers.first(), 0);
        QCOMPARE(numbers.last(), 2);
        QVERIFY(std::is_sorted(numbers.begin(), numbers.end()));
    }

    void aFilmOfThreeHoursFillsItsStrip() {
        const Location still = make("still.png", QStringLiteral("-f lavfi -i testsrc2=s=320x180 -frames:v 1"));
        const Location file =
            make("long.mp4", QStringLiteral("-loop 1 -framerate 1 -t 10800 -i still.png -c:v libx264 -preset ultrafast"
                                            " -tune stillimage -pix_fmt yuv420p"));
        QCOMPARE(framesOf(file, strip(12)).value().size(), 12);
        QCOMPARE(framesOf(file, inSeconds({5400.5}, 0.15)).value().size(), 1);
    }

    // Between two pictures far apart the earlier one is seen.
    void whereTheFilmStandsThePictureThatIsSeenIsTaken() {
        const Location file = make("variable.mp4", counting(8, 10)
                                                       + QStringLiteral(" -vf select='not(between(n,20,59))' -vsync vfr"
                                                                        " -c:v libx264"));
        QCOMPARE(numbersOf(file, inSeconds({1, 4, 5, 7}, 0.15)).mid(1, 2), (QList<int>{19, 19}));
        QCOMPARE(numbersOf(file, inSeconds({4})), (QList<int>{19}));
        QCOMPARE(numbersOf(file, inSeconds({6})), (QList<int>{60}));
        QCOMPARE(numbersOf(file, strip(12)).size(), 12);
    }

    void aTurnedFilmIsUpright() {
        counted("lying.mp4", 2, "-c:v libx264");
        const Location file = make("turned.mp4", QStringLiteral("-i lying.mp4 -c copy -metadata:s:v rotate=90"));
        const QList<QImage> frames = framesOf(file, strip(2)).value();
        QCOMPARE(frames.size(), 2);
        QCOMPARE(frames[0].size(), QSize(180, 320));
    }

    void framesFitTheirBoxAndAreNotEnlarged() {
        const Location large = make("large.mp4", counting(1, 10, "1280:720"));
        QCOMPARE(framesOf(large, strip(1)).value()[0].size(), QSize(400, 225));
        const Location small = make("small.mp4", counting(1, 10, "64:48"));
        QCOMPARE(framesOf(small, strip(1)).value()[0].size(), QSize(64, 48));
    }

    void aFilmWithoutSoundAndOneWithAreTheSame() {
        const Location file = make("loud.mp4", counting(6, 10) + QStringLiteral(" -f lavfi -i sine=d=6 -c:v libx264"));
        QCOMPARE(numbersOf(file, inSeconds({0.05, 2.55})), (QList<int>{0, 25}));
    }

    void beyondTheEndThereIsNothing() {
        const Location file = counted("ended.mp4", 2, "-c:v libx264");
        QCOMPARE(numbersOf(file, inSeconds({1.95, 2.5, 100}, 0.15)),
                 (QList<int>{numbersOf(file, inSeconds({1.95}, 0.15))}));
    }

    void soundAloneHasNoFrames() {
        const Location file = make("sound.m4a", QStringLiteral("-f lavfi -i sine=d=1"));
        QVERIFY(!framesOf(file, strip(12)));
    }

    void aCoverIsNoFilm() {
        make("cover.png", QStringLiteral("-f lavfi -i testsrc2=s=64x64 -frames:v 1"));
        const Location file = make("covered.mp3", QStringLiteral("-f lavfi -i sine=d=1 -i cover.png -map 0 -map 1"
                                                                 " -c:v copy -disposition:v attached_pic"));
        QVERIFY(!framesOf(file, strip(12)));
    }

    void whatIsNoFilmHasNoFrames_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("zero bytes") << QByteArray();
        QTest::newRow("zeros") << QByteArray(100'000, '\0');
        QTest::newRow("text") << QByteArray("no film").repeated(1000);
        QTest::newRow("a header alone") << QByteArray("\0\0\0\x1c"
                                                      "ftypisom\0\0\2\0isomiso2mp41",
                                                      28);
    }

    void whatIsNoFilmHasNoFrames() {
        QFETCH(QByteArray, bytes);
        QVERIFY(!framesOf(home().file("no.mp4", bytes), strip(12)));
    }

    // The header tells of ten seconds, the file holds some of them.
    void whatAHeaderPromisesInVainIsLeftOut() {
        const Location whole =
            make("whole.mp4", counting(10, 10) + QStringLiteral(" -c:v libx264 -g 10 -movflags faststart"));
        const QByteArray film = bytes(whole);
        const Location cut = home().file("cut.mp4", film.left(film.size() * 6 / 10));
        const QList<int> numbers = numbersOf(cut, strip(12));
        QVERIFY2(numbers.size() >= 4 && numbers.size() <= 9, qPrintable(QString::number(numbers.size())));
        QVERIFY(std::is_sorted(numbers.begin(), numbers.end()));
    }

    void aFilmDamagedAtSeveralPlacesYieldsWhatItCan_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("MP4") << QByteArray("damaged.mp4");
        QTest::newRow("Matroska") << QByteArray("damaged.mkv");
        QTest::newRow("WebM") << QByteArray("damaged.webm");
        QTest::newRow("a transport stream") << QByteArray("damaged.ts");
        QTest::newRow("AVI") << QByteArray("damaged.avi");
    }

    void aFilmDamagedAtSeveralPlacesYieldsWhatItCan() {
        QFETCH(QByteArray, name);
        const Location whole = make(name.constData(), counting(10, 10) + QStringLiteral(" -vf noise=alls=20 -g 10"));
        const QByteArray film = bytes(whole);
        for (const int places : {1, 3, 10, 40}) {
            QByteArray damaged = film;
            // Behind the header, and before what may stand at the end.
            for (int i = 0; i < places; ++i) {
                const qsizetype place = film.size() / 10 + film.size() * 7 / 10 * i / places;
                damaged.replace(place, 64, QByteArray(64, char(i * 37)));
            }
            const auto frames = framesOf(home().file("bad" + name.mid(7).toStdString(), damaged), strip(12));
            QVERIFY2(frames && frames->size() > 4, qPrintable(QStringLiteral("%1 places").arg(places)));
        }
    }

    void theKeptFilmAnswersAgain() {
        const Location file = counted("kept.mp4", 4, "-c:v libx264");
        FilmFrames maker;
        for (const auto& [moment, number] : {std::pair{1.05, 10}, {3.05, 30}, {0.55, 5}, {3.25, 32}}) {
            FramesWish wish = inSeconds({moment});
            wish.keepsOpen = true;
            const auto frames = maker.make(OpenedFile::open(file.path()), wish, unlimited);
            QCOMPARE(FilmClips::numbersIn(frames.value().images), QList<int>{number});
            QVERIFY(frames->isWhole);
        }
    }

    void aReplacedFilmIsOpenedAnew() {
        const Location file = counted("replaced.mp4", 2, "-c:v libx264");
        FilmFrames maker;
        FramesWish wish = inSeconds({1.05});
        wish.keepsOpen = true;
        QVERIFY(maker.make(OpenedFile::open(file.path()), wish, unlimited));
        make("other.mp4", counting(2, 20, "160:90"));
        QVERIFY(QFile::remove(file.toString()));
        QVERIFY(QFile::rename(home().path().child("other.mp4").toString(), file.toString()));
        const auto frames = maker.make(OpenedFile::open(file.path()), wish, unlimited);
        QCOMPARE(frames.value().images[0].size(), QSize(160, 90));
        QCOMPARE(FilmClips::numbersIn(frames->images), QList<int>{21});
    }

    void framesThatNobodyWaitsForAreNotMade() {
        const Location file = counted("unwanted.mp4", 6, "-c:v libx264");
        const std::unique_ptr<void, decltype(&std::free)> memory(std::calloc(1, size_t(SharedBlock::size)), &std::free);
        const SharedBlock block(static_cast<uchar*>(memory.get()));
        Interruption::lookAt(block, 7);
        block.stop(6); // another one
        QVERIFY(!Interruption::isRequested());
        QCOMPARE(framesOf(file, strip(12)).value().size(), 12);
        block.stop(7);
        QVERIFY(Interruption::isRequested());
        QVERIFY(framesOf(file, strip(12)).value_or(QList<QImage>()).isEmpty());
        Interruption::lookAt(SharedBlock(), 0);
    }

    void whenTheTimeIsOverTheFramesMadeSoFarAreTheStrip() {
        const Location file =
            make("slow.mp4", counting(20, 30, "1280:720") + QStringLiteral(" -c:v libx264 -preset ultrafast"));
        FilmFrames maker;
        QElapsedTimer timer;
        timer.start();
        const auto frames = maker.make(OpenedFile::open(file.path()), strip(200, 0), 150ms);
        QVERIFY(timer.elapsed() < 5000);
        QVERIFY(frames && frames->images.size() < 200);
        QVERIFY(!frames->isWhole);
    }
};

QTEST_MAIN(tst_FilmFrames)
#include "tst_filmframes.moc"
