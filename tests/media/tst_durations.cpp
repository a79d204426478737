// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Durations.h"
#include "support/FilmClips.h"

#include <QtTest>

using namespace lumbra;

namespace {

Asset assetAt(const Location& file, double modified = 1700000000) {
    return {.url = file, .kind = AssetKind::video, .size = 1, .modified = {modified}, .starred = {}};
}

// What one request yielded, if it has.
struct Outcome {
    int calls = 0;
    std::optional<QString> label = {};

    Durations::Ready ready() {
        return [this](const std::optional<QString>& told) {
            ++calls;
            label = told;
        };
    }
};

} // namespace

class tst_Durations : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_reader = std::make_unique<Reader>();
        m_durations = std::make_unique<Durations>(*m_reader);
    }

    void cleanup() {
        m_durations.reset();
        m_reader.reset();
    }

    void labelsAreRoundedToWholeSeconds_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("label");
        QTest::newRow("almost nothing") << 0.04 << QStringLiteral("0:00");
        QTest::newRow("0.3") << 0.3 << QStringLiteral("0:00");
        QTest::newRow("half a second") << 0.5 << QStringLiteral("0:01");
        QTest::newRow("9.4") << 9.4 << QStringLiteral("0:09");
        QTest::newRow("59.4") << 59.4 << QStringLiteral("0:59");
        QTest::newRow("59.6") << 59.6 << QStringLiteral("1:00");
        QTest::newRow("ten minutes and a second") << 601.0 << QStringLiteral("10:01");
        QTest::newRow("just under an hour") << 3599.4 << QStringLiteral("59:59");
        QTest::newRow("an hour by rounding") << 3599.5 << QStringLiteral("1:00:00");
        QTest::newRow("an hour, a minute, a second") << 3661.0 << QStringLiteral("1:01:01");
        QTest::newRow("more than a day") << 100000.0 << QStringLiteral("27:46:40");
    }

    void labelsAreRoundedToWholeSeconds() {
        QFETCH(double, seconds);
        QTEST(Durations::text(seconds), "label");
    }

    void aFilmOf59Point6SecondsReadsAsAMinute() {
        const Asset asset = assetAt(counted("minute.mp4", 59.6, "-c:v libx264 -preset ultrafast"));
        QVERIFY(!m_durations->seconds(asset));
        QCOMPARE(labelOf(asset), QStringLiteral("1:00"));
        QCOMPARE(m_durations->seconds(asset).value(), 59.6);
    }

    void filmsAndSoundsOfAllFormatsTellTheirLength_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("isSound");
        for (const char* name :
             {"a.mp4", "a.mov", "a.mkv", "a.webm", "a.avi", "a.ogv", "a.mpg", "a.ts", "a.flv", "a.wmv"})
            QTest::newRow(name) << QByteArray(name) << false;
        for (const char* name : {"b.mp3", "b.m4a", "b.aac", "b.flac", "b.ogg", "b.opus", "b.wav", "b.aiff", "b.caf",
                                 "b.wma", "b.mka", "b.ac3"})
            QTest::newRow(name) << QByteArray(name) << true;
    }

    void filmsAndSoundsOfAllFormatsTellTheirLength() {
        QFETCH(QByteArray, name);
        QFETCH(bool, isSound);
        const Location file = isSound ? make(name.constData(), QStringLiteral("-f lavfi -i sine=d=5"))
                                      : make(name.constData(), counting(5, 25));
        const Asset asset = assetAt(file);
        QCOMPARE(labelOf(asset), QStringLiteral("0:05"));
        QVERIFY2(std::abs(m_durations->seconds(asset).value() - 5) < 0.3,
                 qPrintable(QString::number(*m_durations->seconds(asset))));
    }

    // As browsers record.
    void aFilmThatDoesNotTellItsLengthIsReadToItsEnd_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("encoding");
        QTest::newRow("a live recording") << QByteArray("live.webm") << QByteArray("-c:v libvpx -f webm -live 1");
        QTest::newRow("a bare stream") << QByteArray("bare.m2v") << QByteArray("-c:v mpeg2video -r 25");
    }

    void aFilmThatDoesNotTellItsLengthIsReadToItsEnd() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, encoding);
        QCOMPARE(labelOf(assetAt(counted(name.constData(), 5, encoding.constData()))), QStringLiteral("0:05"));
    }

    void aFilmOfThreeTenthsOfASecondReadsAsNone() {
        QCOMPARE(labelOf(assetAt(counted("tiny.mp4", 0.3, "-c:v libx264"))), QStringLiteral("0:00"));
    }

    void soundOfThreeHoursReadsAsThreeHours() {
        const Location file = make("long.flac", QStringLiteral("-f lavfi -i anullsrc=r=8000:cl=mono:d=10800"));
        QCOMPARE(labelOf(assetAt(file)), QStringLiteral("3:00:00"));
    }

    void whatIsKnownComesAtOnce() {
        const Asset asset = assetAt(counted("known.mp4", 2, "-c:v libx264"));
        labelOf(asset);
        QVERIFY(QFile::remove(asset.url.toString()));
        Outcome outcome;
        const auto request = m_durations->duration(asset, this, outcome.ready());
        QCOMPARE(outcome.calls, 1);
        QCOMPARE(outcome.label.value(), QStringLiteral("0:02"));
    }

    void aRewrittenFileIsAskedAnew() {
        const Location file = counted("rewritten.mp4", 2, "-c:v libx264");
        labelOf(assetAt(file, 1700000000));
        counted("rewritten.mp4", 4, "-c:v libx264");
        QCOMPARE(labelOf(assetAt(file, 1700000000.5)), QStringLiteral("0:04"));
        QCOMPARE(labelOf(assetAt(file, 1700000000)), QStringLiteral("0:02"));
    }

    void whatTellsNoLengthHasNoLabelAndIsNotRemembered_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("zero bytes") << QByteArray();
        QTest::newRow("no film") << QByteArray("no film");
        QTest::newRow("a header alone") << QByteArray("\0\0\0\x1c"
                                                      "ftypisom\0\0\2\0isomiso2mp41",
                                                      28);
    }

    void whatTellsNoLengthHasNoLabelAndIsNotRemembered() {
        QFETCH(QByteArray, bytes);
        const Location file = home().file("later.mp4", bytes);
        QVERIFY(!labelOf(assetAt(file)));
        QVERIFY(!m_durations->seconds(assetAt(file)));
        counted("later.mp4", 2, "-c:v libx264"); // the same file at the same date
        QCOMPARE(labelOf(assetAt(file)), QStringLiteral("0:02"));
    }

    void aMissingFileHasNoLabel() { QVERIFY(!labelOf(assetAt(home().path().child("missing.mp4")))); }

    void aFileCutShortStillTellsWhatItsHeaderPromises() {
        const Location whole = make("whole.mp4", counting(5, 10) + QStringLiteral(" -movflags faststart"));
        const QByteArray film = bytes(whole);
        QCOMPARE(labelOf(assetAt(home().file("cut.mp4", film.left(film.size() / 2)))), QStringLiteral("0:05"));
    }

    void ofTwoThatAskAtTheSameTimeBothAreTold() {
        const Asset asset = assetAt(counted("both.mp4", 2, "-c:v libx264"));
        Outcome first, second;
        const auto one = m_durations->duration(asset, this, first.ready());
        const auto two = m_durations->duration(asset, this, second.ready());
        QTRY_COMPARE(first.calls + second.calls, 2);
        QCOMPARE(first.label, second.label);
    }

    void aRequestThatIsDroppedAnswersNobody() {
        const Asset dropped = assetAt(counted("dropped.mp4", 2, "-c:v libx264"));
        const Asset next = assetAt(counted("next.mp4", 2, "-c:v libx264"));
        Outcome outcome;
        { const auto request = m_durations->duration(dropped, this, outcome.ready()); }
        QCOMPARE(labelOf(next), QStringLiteral("0:02"));
        QCOMPARE(outcome.calls, 0);
    }

    void aContextThatHasGoneIsNotCalledButTheLengthStays() {
        const Asset asset = assetAt(counted("gone.mp4", 2, "-c:v libx264"));
        Outcome outcome;
        auto context = std::make_unique<QObject>();
        const auto request = m_durations->duration(asset, context.get(), outcome.ready());
        context.reset();
        QTRY_VERIFY(m_durations->seconds(asset));
        QCOMPARE(outcome.calls, 0);
    }

private:
    std::optional<QString> labelOf(const Asset& asset) {
        Outcome outcome;
        const auto request = m_durations->duration(asset, this, outcome.ready());
        [&] { QTRY_COMPARE(outcome.calls, 1); }();
        return outcome.label;
    }

    std::unique_ptr<Reader> m_reader;
    std::unique_ptr<Durations> m_durations;
};

QTEST_GUILESS_MAIN(tst_Durations)
#include "tst_durations.moc"
