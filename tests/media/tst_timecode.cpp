// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/player/Shuttle.h"
#include "media/player/Timecode.h"

#include <QtTest>

#include <limits>

using namespace lumbra;

class tst_Timecode : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void timesRead_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<bool>("fraction");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, double seconds, bool fraction, const char* text) {
            QTest::newRow(name) << seconds << fraction << QString::fromLatin1(text);
        };
        row("nothing", 0, false, "0:00");
        row("a second", 1, false, "0:01");
        row("just below an hour", 3599.99, false, "59:59");
        row("an hour exactly", 3600, false, "1:00:00");
        row("three hours", 3 * 3600 + 62, false, "3:01:02");
        row("more than a day", 100 * 3600, false, "100:00:00");
        row("hundredths are cut off", 59.999, true, "0:59.99");
        row("hundredths have two digits", 1.05078125, true, "0:01.05");
        row("hundredths of a whole second", 7, true, "0:07.00");
        row("hundredths behind hours", 3600.5, true, "1:00:00.50");
        row("negative counts as nothing", -3, false, "0:00");
        row("negative, with hundredths", -3, true, "0:00.00");
        row("no number", std::numeric_limits<double>::quiet_NaN(), false, "0:00");
        row("no number has no hundredths", std::numeric_limits<double>::quiet_NaN(), true, "0:00");
        row("endless", std::numeric_limits<double>::infinity(), false, "0:00");
    }
    void timesRead() {
        QFETCH(double, seconds);
        QFETCH(bool, fraction);
        QTEST(timecode(seconds, fraction), "text");
    }

    void whatNoFilmLastsIsStillText() { QVERIFY(!timecode(1e300, true).isEmpty()); }

    void codecsAreNamed_data() {
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QString>("name");
        const auto row = [](const char* code, const char* name) {
            QTest::newRow(code) << QByteArray(code) << QString::fromLatin1(name);
        };
        for (const char* code : {"avc1", "avc3"})
            row(code, "H.264");
        for (const char* code : {"hvc1", "hev1"})
            row(code, "HEVC");
        for (const char* code : {"ap4h", "ap4x", "apcn", "apch", "apcs", "apco"})
            row(code, "ProRes");
        row("vp09", "VP9");
        row("av01", "AV1");
        row("vp08", "VP08");
        row("dvc ", "DVC");
        row(" raw", "RAW");
        row("\xff\xd8\xff\xe0", "?");
    }
    void codecsAreNamed() {
        QFETCH(QByteArray, code);
        quint32 number = 0;
        for (const char byte : code)
            number = number << 8 | quint8(byte);
        QTEST(codecName(number), "name");
    }

    void codesOfCodecs_data() {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("name");
        const auto row = [](const char* codec, const char* name) {
            QTest::newRow(codec) << QByteArray(codec) << QString::fromLatin1(name);
        };
        row("h264", "H.264");
        row("hevc", "HEVC");
        row("prores", "ProRes");
        row("vp8", "VP08");
        row("vp9", "VP9");
        row("av1", "AV1");
        row("theora", "THEO");
        row("mpeg4", "MP4V");
        row("gif", "GIF");
        row("", "");
    }
    void codesOfCodecs() {
        QFETCH(QByteArray, codec);
        QTEST(codecName(codecCode(codec)), "name");
    }

    void pressesShuttle_data() {
        QTest::addColumn<double>("shuttle");
        QTest::addColumn<int>("direction");
        QTest::addColumn<bool>("plays");
        QTest::addColumn<double>("then");
        QTest::newRow("forward from a stand is once") << 1.0 << 1 << false << 1.0;
        QTest::newRow("forward again doubles") << 1.0 << 1 << true << 2.0;
        QTest::newRow("and doubles") << 2.0 << 1 << true << 4.0;
        QTest::newRow("and stays") << 4.0 << 1 << true << 4.0;
        QTest::newRow("backward from forward is once") << 4.0 << -1 << true << -1.0;
        QTest::newRow("backward again doubles") << -1.0 << -1 << true << -2.0;
        QTest::newRow("backward ends at four") << -4.0 << -1 << true << -4.0;
        QTest::newRow("backward from a stand is once") << -4.0 << -1 << false << -1.0;
        QTest::newRow("forward from backward is once") << -2.0 << 1 << true << 1.0;
    }
    void pressesShuttle() {
        QFETCH(double, shuttle);
        QFETCH(int, direction);
        QFETCH(bool, plays);
        QTEST(shuttleAfter(shuttle, direction, plays), "then");
    }
};

QTEST_GUILESS_MAIN(tst_Timecode)
#include "tst_timecode.moc"
