// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/Protocol.h"

#include <QtTest>

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
        QTest::newRow("another version") << changed(good, 0, 2);
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
