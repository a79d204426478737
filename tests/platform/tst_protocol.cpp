// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/Protocol.h"

#include <QtTest>

#include <cmath>

using namespace lumbra::reader;

namespace {

Request request() {
    return {.number = 7,
            .kind = Kind::thumbnail,
            .limit = 8000,
            .path = "/a/b.png",
            .details = encoded(PictureBox{{240, 180}})};
}

QByteArray changed(QByteArray message, qsizetype at, char byte) {
    message[at] = byte;
    return message;
}

Request with(QByteArray path) {
    Request made = request();
    made.path = std::move(path);
    return made;
}

constexpr PictureFacts pixel{{1, 1}, true};

} // namespace

class tst_Protocol : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRequestArrivesAsItWasSent() {
        const auto decoded = decodedRequest(encoded(request()));
        QVERIFY(decoded);
        QCOMPARE(decoded->number, 7u);
        QCOMPARE(decoded->limit, 8000u);
        QCOMPARE(decoded->path, "/a/b.png");
        QCOMPARE(decodedPictureBox(decoded->details)->size, QSize(240, 180));
    }

    void anAnswerArrivesAsItWasSent() {
        const QByteArray facts = encoded(PictureFacts{{3, 2}, true});
        const auto decoded = decodedAnswer(encoded(Answer{.number = 9, .found = true, .details = facts, .bulk = 24}));
        QVERIFY(decoded);
        QCOMPARE(decoded->number, 9u);
        QVERIFY(decoded->found);
        const auto picture = decodedPictureFacts(decoded->details, decoded->bulk);
        QVERIFY(picture);
        QCOMPARE(picture->size, QSize(3, 2));
        QVERIFY(picture->opaque);
    }

    void nonsense_data() {
        QTest::addColumn<QByteArray>("message");
        const QByteArray good = encoded(request());
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("hello");
        for (qsizetype size : {1, 6, 11, 20})
            QTest::addRow("cut after %d bytes", int(size)) << good.left(size);
        QTest::newRow("a byte too many") << good + 'x';
        QTest::newRow("another version") << changed(good, 0, 1);
        QTest::newRow("another shape") << changed(good, 1, 2);
        QTest::newRow("number 0") << changed(good, 5, 0);
        QTest::newRow("an unknown kind") << changed(good, 6, 99);
        QTest::newRow("a length beyond the message") << changed(good, 11, 0x7f);
        QTest::newRow("a relative path") << encoded(with("a/b.png"));
        QTest::newRow("a path with a NUL") << encoded(with(QByteArray("/a\0b", 4)));
        QTest::newRow("longer than a message may be") << encoded(with('/' + QByteArray(messageLimit, 'a')));
        QTest::newRow("an answer") << encoded(Answer{.number = 1});
    }

    void nonsense() {
        QFETCH(QByteArray, message);
        QVERIFY(!decodedRequest(message));
    }

    void nonsenseAsAnswer_data() {
        QTest::addColumn<QByteArray>("message");
        const QByteArray good = encoded(Answer{.number = 1, .found = true});
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("cut") << good.chopped(1);
        QTest::newRow("a byte too many") << good + 'x';
        QTest::newRow("another version") << changed(good, 0, 9);
        QTest::newRow("neither found nor not") << changed(good, 6, 2);
        QTest::newRow("more bulk than the arena holds")
            << encoded(Answer{.number = 1, .found = true, .bulk = quint32(arenaSize) + 1});
        QTest::newRow("a request") << encoded(request());
    }

    void nonsenseAsAnswer() {
        QFETCH(QByteArray, message);
        QVERIFY(!decodedAnswer(message));
    }

    void pixelsArriveAsTheyWereSentWithinBounds() {
        QCOMPARE(decodedPixelSize(encoded(PixelSize{{40'000, 1}}))->size, QSize(40'000, 1));
        for (const QSize& size : {QSize(0, 5), QSize(5, 0), QSize(longestPicture + 1, 5), QSize(-1, 5)})
            QVERIFY(!decodedPixelSize(encoded(PixelSize{size})));
        QVERIFY(!decodedPixelSize({}));
        QVERIFY(!decodedPixelSize(encoded(PixelSize{{4, 4}}) + 'x'));
    }

    void whatIsAskedOfAPagesWordsArrivesAsItWasSentWithinBounds() {
        const PageTextWish wish{.page = 4, .from = {-3, 70.5}, .to = {10, 1e6}, .grain = PageTextWish::Grain::words};
        QCOMPARE(decodedPageTextWish(encoded(wish)), wish);
        QVERIFY(!decodedPageTextWish(encoded(wish) + 'x'));
        QVERIFY(!decodedPageTextWish(changed(encoded(wish), encoded(wish).size() - 1, 3))); // no such grain
        QVERIFY(!decodedPageTextWish(encoded(PageTextWish{.page = mostPages})));
        QVERIFY(!decodedPageTextWish(encoded(PageTextWish{.from = {std::nan(""), 0}})));
        QVERIFY(!decodedPageTextWish(encoded(PageTextWish{.to = {0, 2e6}})));
        QCOMPARE(decodedPageTextFacts(encoded(PageTextFacts{2}), 40)->places, 2);
        QVERIFY(!decodedPageTextFacts(encoded(PageTextFacts{2}), 31)); // it has no room for them
        QVERIFY(!decodedPageTextFacts(encoded(PageTextFacts{mostPlaces + 1}), arenaSize));
    }

    void whatIsAskedOfMediaArrivesAsItWasSent() {
        const FramesWish wish{.moments = {0, 0.25, 3600.5},
                              .unit = FramesWish::Unit::durations,
                              .tolerance = 0.5,
                              .box = {320, 200},
                              .keepsOpen = true};
        const auto decoded = decodedFramesWish(encoded(wish));
        QVERIFY(decoded);
        QCOMPARE(decoded->moments, wish.moments);
        QCOMPARE(decoded->unit, wish.unit);
        QCOMPARE(decoded->tolerance, wish.tolerance);
        QCOMPARE(decoded->box, wish.box);
        QVERIFY(decoded->keepsOpen);
        QCOMPARE(decodedLoudnessWish(encoded(LoudnessWish{140}))->count, 140);
    }

    void whatIsFoundInMediaArrivesAsItWasSent() {
        const MediaFacts facts{59.6, true, false};
        QCOMPARE(decodedMediaFacts(encoded(facts)).value(), facts);
        const auto decoded = decodedFramesFacts(encoded(FramesFacts{{{{3, 2}, true}, {{1, 1}, false}}, false}), 28);
        QVERIFY(decoded);
        QCOMPARE(decoded->frames.size(), 2);
        QCOMPARE(decoded->frames[0].size, QSize(3, 2));
        QVERIFY(decoded->frames[0].opaque && !decoded->frames[1].opaque);
        QVERIFY(!decoded->isWhole);
        const auto none = decodedFramesFacts(encoded(FramesFacts{}), 0);
        QVERIFY(none->frames.isEmpty() && none->isWhole);
    }

    void whatIsAskedOfPagesArrivesAsItWasSent() {
        const PageWish wish{.page = 499, .whole = {59500, 84200}, .part = {100, 200, 300, 400}};
        const auto decoded = decodedPageWish(encoded(wish));
        QVERIFY(decoded);
        QCOMPARE(decoded->page, wish.page);
        QCOMPARE(decoded->whole, wish.whole);
        QCOMPARE(decoded->part, wish.part);
        QCOMPARE(decodedPagesFacts(encoded(PagesFacts{2, false}), 16)->count, 2);
        QVERIFY(decodedPagesFacts(encoded(PagesFacts{0, true}), 0)->isLocked);
    }

    void senselessPages_data() {
        QTest::addColumn<int>("page");
        QTest::addColumn<QSize>("whole");
        QTest::addColumn<QRect>("part");
        const QSize sheet(600, 800);
        QTest::newRow("before the first") << -1 << sheet << QRect(0, 0, 10, 10);
        QTest::newRow("too far") << mostPages << sheet << QRect(0, 0, 10, 10);
        QTest::newRow("no whole") << 0 << QSize(0, 0) << QRect(0, 0, 10, 10);
        QTest::newRow("a whole too large") << 0 << QSize(longestPage + 1, 1) << QRect(0, 0, 1, 1);
        QTest::newRow("no part") << 0 << sheet << QRect();
        QTest::newRow("a part of no height") << 0 << sheet << QRect(0, 0, 10, 0);
        QTest::newRow("a part that begins outside") << 0 << sheet << QRect(-1, 0, 10, 10);
        QTest::newRow("a part that ends outside") << 0 << sheet << QRect(0, 0, 601, 10);
        QTest::newRow("a part too wide") << 0 << QSize(10000, 10) << QRect(0, 0, longestSide + 1, 10);
        QTest::newRow("a part without bounds")
            << 0 << sheet << QRect(QPoint(INT_MIN, INT_MIN), QPoint(INT_MAX, INT_MAX));
    }

    void senselessPages() {
        QFETCH(int, page);
        QFETCH(QSize, whole);
        QFETCH(QRect, part);
        QVERIFY(!decodedPageWish(encoded(PageWish{page, whole, part})));
    }

    void senselessCountsOfPages() {
        QVERIFY(!decodedPagesFacts(encoded(PagesFacts{2, false}), 15));
        QVERIFY(!decodedPagesFacts(encoded(PagesFacts{0, false}), 0));
        QVERIFY(!decodedPagesFacts(encoded(PagesFacts{1, true}), 8));
        QVERIFY(!decodedPagesFacts(encoded(PagesFacts{mostPages + 1, false}), (mostPages + 1) * qsizetype(8)));
        QVERIFY(!decodedPagesFacts({}, 0));
    }

    void senselessWishes_data() {
        QTest::addColumn<QByteArray>("details");
        const FramesWish good{.moments = {1}, .tolerance = 0.5, .box = {320, 320}};
        const auto row = [&good](const char* label, const std::function<void(FramesWish&)>& change) {
            FramesWish wish = good;
            change(wish);
            QTest::newRow(label) << encoded(wish);
        };
        QVERIFY(decodedFramesWish(encoded(good)));
        row("no moments", [](FramesWish& wish) { wish.moments.clear(); });
        row("too many moments", [](FramesWish& wish) { wish.moments = QList<double>(mostFrames + 1, 1.0); });
        row("a moment before the start", [](FramesWish& wish) { wish.moments = {-1}; });
        row("a moment that is no number", [](FramesWish& wish) { wish.moments = {qQNaN()}; });
        row("a moment without end", [](FramesWish& wish) { wish.moments = {qInf()}; });
        row("a negative tolerance", [](FramesWish& wish) { wish.tolerance = -1; });
        row("no box", [](FramesWish& wish) { wish.box = {0, 0}; });
        row("a box too large", [](FramesWish& wish) { wish.box = {longestSide + 1, 1}; });
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("cut short") << encoded(good).chopped(1);
        QTest::newRow("a byte too many") << encoded(good) + 'x';
    }

    void senselessWishes() {
        QFETCH(QByteArray, details);
        QVERIFY(!decodedFramesWish(details));
    }

    void senselessCountsOfBars() {
        for (const int count : {0, -1, mostBars + 1})
            QVERIFY(!decodedLoudnessWish(encoded(LoudnessWish{count})));
    }

    void senselessFacts() {
        for (const double duration : {-1.0, qQNaN(), double(qInf()), 1e12})
            QVERIFY(!decodedMediaFacts(encoded(MediaFacts{duration, true, true})));
        QVERIFY(!decodedMediaFacts({}));
    }

    void senselessFrames() {
        const QByteArray two = encoded(FramesFacts{{pixel, pixel}});
        QVERIFY(decodedFramesFacts(two, 8));
        QVERIFY(!decodedFramesFacts(two, 4));
        QVERIFY(!decodedFramesFacts(two, 12));
        QVERIFY(!decodedFramesFacts(two.chopped(1), 8));
        QVERIFY(!decodedFramesFacts(two + 'x', 8));
        QVERIFY(!decodedFramesFacts(changed(two, 0, 2), 8));
        QVERIFY(!decodedFramesFacts(changed(two, 2, 9), 8));
        QVERIFY(!decodedFramesFacts({}, 0));
        QVERIFY(!decodedFramesFacts(encoded(FramesFacts{QList<PictureFacts>(mostFrames + 1, pixel)}),
                                    (mostFrames + 1) * 4));
    }

    void picturesOutOfBounds_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<qint64>("bulk");
        QTest::newRow("no width") << QSize(0, 4) << qint64(0);
        QTest::newRow("negative") << QSize(-1, 4) << qint64(-16);
        QTest::newRow("too wide") << QSize(longestSide + 1, 1) << qint64(longestSide + 1) * 4;
        QTest::newRow("more pixels than bytes") << QSize(4, 4) << qint64(60);
        QTest::newRow("more bytes than pixels") << QSize(4, 4) << qint64(68);
    }

    void picturesOutOfBounds() {
        QFETCH(QSize, size);
        QFETCH(qint64, bulk);
        QVERIFY(!decodedPictureFacts(encoded(PictureFacts{size, false}), bulk));
    }
};

QTEST_GUILESS_MAIN(tst_Protocol)
#include "tst_protocol.moc"
