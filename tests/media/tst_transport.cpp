// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/KeyHintTable.h"
#include "media/room/Transport.h"
#include "support/Strings.h"

#include <QtTest>

using namespace lumbra;

class tst_Transport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSpeedsStandInTheirOrder() { QCOMPARE(Transport::speeds(), (QList<double>{0.5, 1, 1.25, 1.5, 2})); }

    void speedsInWords_data() {
        QTest::addColumn<double>("speed");
        QTest::addColumn<QString>("text");
        QTest::newRow("a half") << 0.5 << QStringLiteral("0.5×");
        QTest::newRow("as it is") << 1.0 << QStringLiteral("1×");
        QTest::newRow("two digits") << 1.25 << QStringLiteral("1.25×");
        QTest::newRow("one digit") << 1.5 << QStringLiteral("1.5×");
        QTest::newRow("a whole number") << 2.0 << QStringLiteral("2×");
    }
    void speedsInWords() {
        QFETCH(double, speed);
        QTEST(Transport::speedText(speed), "text");
    }

    void theBadgeTellsOfShuttling_data() {
        QTest::addColumn<bool>("isPlaying");
        QTest::addColumn<double>("shuttle");
        QTest::addColumn<QString>("text");
        QTest::newRow("not shuttling") << true << 1.0 << QString();
        QTest::newRow("forward") << true << 2.0 << QStringLiteral("2× \u25B6\uFE0E");
        QTest::newRow("fastest") << true << 4.0 << QStringLiteral("4× \u25B6\uFE0E");
        QTest::newRow("backward") << true << -1.0 << QStringLiteral("\u25C0\uFE0E 1×");
        QTest::newRow("fast backward") << true << -4.0 << QStringLiteral("\u25C0\uFE0E 4×");
        QTest::newRow("paused") << false << 2.0 << QString();
    }
    void theBadgeTellsOfShuttling() {
        QFETCH(bool, isPlaying);
        QFETCH(double, shuttle);
        QTEST(Transport::shuttleText(isPlaying, shuttle), "text");
    }

    void theSpeakerIsCrossedOutWhereNothingIsHeard() {
        const QString loud = QStringLiteral("speaker.wave.2.fill"), silent = QStringLiteral("speaker.slash.fill");
        QCOMPARE(Transport::volumeSymbol(1, false), loud);
        QCOMPARE(Transport::volumeSymbol(0.01, false), loud);
        QCOMPARE(Transport::volumeSymbol(1, true), silent);
        QCOMPARE(Transport::volumeSymbol(0, false), silent);
    }

    void timesAreCutOff() {
        QCOMPARE(Transport::timecode(59.999, true), QStringLiteral("0:59.99"));
        QCOMPARE(Transport::timecode(59.999, false), QStringLiteral("0:59"));
    }

    void eachKindNamesItsKeys_data() {
        QTest::addColumn<AssetKind>("kind");
        QTest::addColumn<QStringList>("hints");
        QTest::newRow("video") << AssetKind::video
                               << strings({"Space: Play", "J K L: Shuttle", ", .: Frame", "S: Star", "↑ ↓: Next file",
                                           "I: Info", "F: Full screen", "Esc: Back"});
        QTest::newRow("audio") << AssetKind::audio
                               << strings({"Space: Play", "← →: 5 seconds", "S: Star", "↑ ↓: Next file", "I: Info",
                                           "Esc: Back"});
        const QStringList others = strings({"← →: Previous or next", "S: Star", "I: Info", "Esc: Back"});
        QTest::newRow("image") << AssetKind::image << others;
        QTest::newRow("document") << AssetKind::document << others;
    }
    void aFilmInAWebViewHasNoneOfThePlayersKeys() {
        const QVariantList hints = KeyHintTable::hintsFor(QStringLiteral("web"));
        QCOMPARE(hints, KeyHintTable::hintsFor(QStringLiteral("image")));
        QVERIFY(hints != KeyHintTable::hintsFor(QStringLiteral("video")));
    }

    void eachKindNamesItsKeys() {
        QFETCH(AssetKind, kind);
        QFETCH(QStringList, hints);
        QStringList found;
        for (const KeyHint& hint : keyHintsFor(kind))
            found << hint.keys + QStringLiteral(": ") + hint.meaning;
        QCOMPARE(found, hints);
        QCOMPARE(KeyHintTable::hintsFor(rawValue(kind)).size(), hints.size());
    }
};

QTEST_GUILESS_MAIN(tst_Transport)
#include "tst_transport.moc"
