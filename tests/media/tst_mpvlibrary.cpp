// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"
#include "media/player/GraphicsHardware.h"

#include <QFile>
#include <QtTest>

using namespace lumbra;

// When the player's library is loaded, and what happens where there is none.
class tst_MpvLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First, since what is loaded once stays.
    void isNotLoadedBeforeAFileIs() {
        QVERIFY(!isLoaded());
        Player player;
        player.engine.setVolume(0.5);
        player.engine.setMuted(true);
        player.engine.setLoop(true);
        player.engine.setSpeed(2);
        player.engine.seek(1, true);
        player.engine.shuttle(1);
        player.engine.stop();
        player.engine.play();
        QVERIFY(!player.engine.mpv()->isStarted());
        QVERIFY(!isLoaded());
        QVERIFY(player.engine.isAvailable());

        // What was set before holds.
        player.open("h264.mp4");
        QVERIFY(isLoaded());
        QTRY_COMPARE(player.value("volume").toDouble(), 50.0);
        QTRY_COMPARE(player.value("mute"), "yes");
        player.engine.play();
        QTRY_COMPARE(player.value("speed").toDouble(), 2.0);
    }

    void whatIsAskedForWhileItStartsIsMadeUpFor() {
        Player player;
        player.engine.load(Clips::clip("h264.mp4"), true);
        player.engine.seek(1, true);
        player.engine.setVolume(0.25);
        QVERIFY(player.engine.isPlaying());
        QTRY_COMPARE(player.ends, 1);
        QCOMPARE(player.value("volume").toDouble(), 25.0);
    }

    void aPlayerMayGoWhileItStarts() {
        for (int i = 0; i < 20; ++i) {
            Player player;
            player.engine.load(Clips::clip("h264.mp4"), true);
        }
    }

    void whatIsNoSuchLibraryIsNone_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("not installed") << QByteArray("liblumbra-none.so.2");
        QTest::newRow("another library") << QByteArray("libm.so.6");
    }
    void whatIsNoSuchLibraryIsNone() {
        QFETCH(QByteArray, name);
        QVERIFY(!MpvLibrary::load(name));
    }

    // As where there is none.
    void withoutAPlayerNothingPlays() {
        Player player(MpvHandle::Options{{"there-is-no-such-option", "1"}});
        player.engine.load(Clips::clip("h264.mp4"), true);
        QTRY_VERIFY(!player.engine.isAvailable());
        QVERIFY(!player.engine.isPlaying());
        player.engine.play();
        player.engine.shuttle(1);
        player.engine.seek(1, true);
        player.engine.step(1);
        QVERIFY(!player.engine.isPlaying());
        player.engine.load(Clips::clip("tone.wav"), true);
        QVERIFY(!player.engine.isPlaying());
        player.engine.stop();
        QVERIFY(player.engine.url().isEmpty());
        QVERIFY(!player.engine.hasPicture());
        QCOMPARE(player.ends, 0);
    }

    void withoutAGraphicsProcessorNoneIsTried_data() {
        QTest::addColumn<QByteArray>("device");
        QTest::addColumn<bool>("isTried");
        QTest::newRow("no device") << QByteArray("null") << false;
        QTest::newRow("a screen that only shows") << QByteArray("dri/card0") << false;
        QTest::newRow("a processor") << QByteArray("dri/renderD128") << true;
        QTest::newRow("a processor with a driver of its own") << QByteArray("nvidiactl") << true;
    }
    void withoutAGraphicsProcessorNoneIsTried() {
        QFETCH(QByteArray, device);
        const TestHome home;
        home.file(std::string_view(device.constData(), size_t(device.size())));
        QTEST(hasGraphicsHardware(home.path()), "isTried");
    }

    void whatThePlayerDecodesByIsWhatTheMachineHas() {
        Player player;
        player.open("h264.mp4");
        QCOMPARE(player.value("hwdec"), hasGraphicsHardware() ? "auto-safe" : "no");
    }

private:
    static bool isLoaded() {
        QFile maps(QStringLiteral("/proc/self/maps"));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("/libmpv.so");
    }
};

QTEST_GUILESS_MAIN(tst_MpvLibrary)
#include "tst_mpvlibrary.moc"
