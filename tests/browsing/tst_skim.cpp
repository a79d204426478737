// Skimming a film's tile: what the pointer's place stands for, and when frames are fetched.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/tiles/Skimmer.h"

#include <QTest>

using namespace lumbra;
using namespace std::chrono_literals;

namespace {

Asset film(const char* path = "/library/a.mp4") {
    return {.url = Location(QByteArray(path)), .kind = AssetKind::video, .modified = Date{1}, .starred = {}};
}

QList<QImage> strip(int count) {
    QList<QImage> frames;
    for (int i = 0; i < count; ++i) {
        QImage frame(4, 4, QImage::Format_RGB32);
        frame.fill(qRgb(i, i, i));
        frames.append(frame);
    }
    return frames;
}

// A skimmer over frames that the test hands out itself.
struct Skimming {
    int asked = 0;
    std::stop_token token;
    Frames::Ready ready;
    std::optional<double> length;
    Skimmer skimmer{[this](const Asset&, QObject*, Frames::Ready answer) {
                        ++asked;
                        ready = std::move(answer);
                        const std::stop_source stop;
                        token = stop.get_token();
                        return MediaRequest(stop);
                    },
                    [this](const Asset&) { return length; }, 0ms};

    explicit Skimming(const Asset& asset = film()) {
        skimmer.setAsset(asset);
        skimmer.setSize(200);
        skimmer.setX(103);
    }

    // The pointer rests on the tile until the frames are asked for.
    void rest() {
        const int before = asked;
        skimmer.setHovering(true);
        QTRY_COMPARE(asked, before + 1);
    }

    int shown() const { return skimmer.isRunning() ? qRed(skimmer.frame().pixel(0, 0)) : -1; }
};

} // namespace

class TestSkim : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePointerStandsForAPlaceInTheFilm_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("position");
        QTest::newRow("the margin's end") << 3.0 << 0.0;
        QTest::newRow("in the margin") << 0.0 << 0.0;
        QTest::newRow("a quarter") << 53.0 << 0.25;
        QTest::newRow("the middle") << 103.0 << 0.5;
        QTest::newRow("the picture's end") << 203.0 << 1.0;
        QTest::newRow("beyond") << 206.0 << 1.0;
    }
    void thePointerStandsForAPlaceInTheFilm() {
        QFETCH(double, x);
        QTEST(Skim::positionAt(x, 200), "position");
    }

    void aPlaceStandsForAFrame_data() {
        QTest::addColumn<double>("position");
        QTest::addColumn<qsizetype>("count");
        QTest::addColumn<qsizetype>("frame");
        QTest::newRow("start") << 0.0 << qsizetype(16) << qsizetype(0);
        QTest::newRow("middle") << 0.5 << qsizetype(16) << qsizetype(8);
        QTest::newRow("truncated") << 0.999 << qsizetype(16) << qsizetype(15);
        QTest::newRow("end") << 1.0 << qsizetype(16) << qsizetype(15);
        QTest::newRow("fewer than asked for") << 1.0 << qsizetype(3) << qsizetype(2);
        QTest::newRow("one") << 1.0 << qsizetype(1) << qsizetype(0);
    }
    void aPlaceStandsForAFrame() {
        QFETCH(double, position);
        QFETCH(qsizetype, count);
        QTEST(Skim::frameAt(position, count), "frame");
    }

    void framesCostRealDecoding() {
        QCOMPARE(Skim::rest, 150ms);
        QCOMPARE(Skim::frames, 16);
        QCOMPARE(Skim::longestSide, 260);
    }

    void aPointerThatRestsGetsFrames() {
        Skimming film;
        QVERIFY(!film.skimmer.position());
        film.rest();
        QCOMPARE(film.skimmer.position(), std::optional(0.5));
        QCOMPARE(film.shown(), -1);
        film.ready(strip(16));
        QCOMPARE(film.shown(), 8);
        film.skimmer.setX(203);
        QCOMPARE(film.shown(), 15);
        film.skimmer.setHovering(false);
        QCOMPARE(film.shown(), -1);
        QVERIFY(!film.skimmer.position());
    }

    void aPointerThatPassesFetchesNothing() {
        Skimming film;
        film.skimmer.setHovering(true);
        film.skimmer.setHovering(false);
        Skimming().rest(); // as long as it would have taken
        QCOMPARE(film.asked, 0);
    }

    void framesAreFetchedOnce() {
        Skimming film;
        film.rest();
        film.ready(strip(16));
        film.skimmer.setHovering(false);
        film.skimmer.setHovering(true);
        QCOMPARE(film.shown(), 8);
        QCoreApplication::processEvents();
        QCOMPARE(film.asked, 1);
    }

    void aFilmWithoutFramesIsAskedAgain() {
        Skimming film;
        film.rest();
        film.ready({});
        QCOMPARE(film.shown(), -1);
        film.skimmer.setHovering(false);
        film.rest();
        QCOMPARE(film.asked, 2);
    }

    void leavingTakesTheRequestBack() {
        Skimming film;
        film.rest();
        QVERIFY(!film.token.stop_requested());
        film.skimmer.setHovering(false);
        QVERIFY(film.token.stop_requested());
        film.ready(strip(16)); // which was on its way
        film.skimmer.setHovering(true);
        QCOMPARE(film.shown(), -1);
    }

    void onlyFilmsAreSkimmed_data() {
        QTest::addColumn<AssetKind>("kind");
        QTest::newRow("image") << AssetKind::image;
        QTest::newRow("audio") << AssetKind::audio;
        QTest::newRow("document") << AssetKind::document;
    }
    void onlyFilmsAreSkimmed() {
        QFETCH(AssetKind, kind);
        Asset asset = film();
        asset.kind = kind;
        Skimming other(asset);
        other.skimmer.setHovering(true);
        QVERIFY(!other.skimmer.position());
        Skimming().rest();
        QCOMPARE(other.asked, 0);
    }

    void theTimeIsThatOfThePointer() {
        Skimming film;
        film.length = 130;
        film.rest();
        QVERIFY(film.skimmer.time().isEmpty()); // there are no frames yet
        film.ready(strip(16));
        QCOMPARE(film.skimmer.time(), QStringLiteral("1:05"));
        film.skimmer.setX(203);
        QCOMPARE(film.skimmer.time(), QStringLiteral("2:10"));
    }

    void aFilmOfUnknownLengthHasFramesAndNoTime() {
        Skimming film;
        film.rest();
        film.ready(strip(16));
        QVERIFY(film.skimmer.isRunning());
        QVERIFY(film.skimmer.time().isEmpty());
    }

    void anotherFilmInTheSameTileForgetsTheFrames() {
        Skimming film;
        film.rest();
        film.ready(strip(16));
        film.skimmer.setAsset(::film("/library/b.mp4"));
        QCOMPARE(film.shown(), -1);
        QTRY_COMPARE(film.asked, 2); // the pointer rests on it
        film.ready(strip(4));
        QCOMPARE(film.shown(), 2);
    }

    void aStarKeepsTheFrames() {
        Skimming film;
        film.rest();
        film.ready(strip(16));
        Asset starred = ::film();
        starred.starred = Date{2};
        film.skimmer.setAsset(starred);
        QCOMPARE(film.shown(), 8);
        QCOMPARE(film.asked, 1);
    }
};

QTEST_GUILESS_MAIN(TestSkim)
#include "tst_skim.moc"
