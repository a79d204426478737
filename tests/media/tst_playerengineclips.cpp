// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"

#include <QFile>
#include <QtTest>

using namespace lumbra;

// What the player makes of sound files of all kinds.
class tst_PlayerEngineClips : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyKindPlaysToItsEnd_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("codec");
        QTest::addColumn<double>("duration");
        const auto row = [](const char* clip, QSize size, const char* codec, double duration) {
            QTest::newRow(clip) << size << QString::fromLatin1(codec) << duration;
        };
        row("h264.mp4", {160, 90}, "H.264", 2);
        row("hevc.mp4", {160, 90}, "HEVC", 2);
        row("prores.mov", {160, 90}, "ProRes", 2);
        row("vp8.webm", {160, 90}, "VP08", 2);
        row("vp9.webm", {160, 90}, "VP9", 2);
        row("av1.mp4", {160, 90}, "AV1", 2);
        row("theora.ogv", {160, 90}, "THEO", 2);
        row("mpeg4.avi", {160, 90}, "MP4V", 2);
        row("turned.mp4", {90, 160}, "H.264", 2);
        row("stretched.mp4", {320, 90}, "H.264", 2);
        row("silent.mp4", {160, 90}, "H.264", 2);
        row("uneven.mp4", {160, 90}, "H.264", 2);
        row("blink.mp4", {160, 90}, "H.264", 0.3);
        for (const char* sound :
             {"tone.mp3", "tone.m4a", "tone.flac", "tone.ogg", "tone.opus", "tone.wav", "covered.mp3"})
            row(sound, {}, "", 2);
    }
    void everyKindPlaysToItsEnd() {
        QFETCH(QSize, size);
        const char* const clip = QTest::currentDataTag();
        if (!Clips::canMake(clip))
            QSKIP("FFmpeg lacks the encoder here");
        Player player;
        player.engine.load(Clips::clip(clip), true);
        QTRY_VERIFY(player.engine.duration() > 0);
        QTRY_COMPARE(player.engine.videoSize(), size);
        QTEST(player.engine.codec(), "codec");
        QFETCH(double, duration);
        QVERIFY2(std::abs(player.engine.duration() - duration) < 0.12, QByteArray::number(player.engine.duration()));
        QTRY_VERIFY(player.engine.time() > 0.1 || player.ends == 1);
        if (duration > 1)
            player.engine.seek(player.engine.duration() - 0.5, true); // the rest is more of the same
        QTRY_COMPARE(player.ends, 1);
        QCOMPARE(player.engine.time(), player.engine.duration());
    }

    void threeHoursAreSoughtThroughAtOnce() {
        Player player;
        player.open("hours.mp4");
        QCOMPARE(player.engine.duration(), 10800.0);
        player.engine.seek(3 * 3600 - 100, true);
        QVERIFY(player.settlesAt(3 * 3600 - 100, 1));
        player.engine.seek(5000, false);
        QVERIFY(player.settlesAt(5000, 61));
    }

    void soundFollowsThirtyTimesASecond() {
        Player player;
        player.engine.load(Clips::clip("tone.mp3"), true);
        int changes = 0;
        QObject::connect(&player.engine, &PlayerEngine::timeChanged, [&] { ++changes; });
        QTRY_COMPARE(player.ends, 1);
        QVERIFY2(changes >= 15, QByteArray::number(changes)); // a busy machine makes fewer
        QVERIFY(changes <= 64);
    }

    void withoutASoundDeviceFilmsAndSoundsGoOn_data() {
        QTest::addColumn<bool>("film");
        QTest::newRow("a film") << true;
        QTest::newRow("a sound") << false;
    }
    void withoutASoundDeviceFilmsAndSoundsGoOn() {
        QFETCH(bool, film);
        TestHome home;
        Preferences preferences(home.path().child("settings.ini"));
        PlayerEngine engine(preferences, {{"ao", "alsa"}, {"audio-device", "alsa/lumbra-none"}});
        bool hasEnded = false;
        engine.setOnEnd([&] { hasEnded = true; });
        engine.setSpeed(2);
        engine.load(Clips::clip(film ? "h264.mp4" : "tone.wav"), true);
        QTRY_VERIFY(hasEnded);
        QCOMPARE(engine.time(), engine.duration());
    }

    // With no option of the test's: on a machine without sound it goes on in silence too.
    void soundGoesToPipeWireOrPulseAudioOrAlsa() {
        TestHome home;
        Preferences preferences(home.path().child("settings.ini"));
        PlayerEngine engine(preferences);
        engine.setMuted(true);
        bool hasEnded = false;
        engine.setOnEnd([&] { hasEnded = true; });
        engine.load(Clips::clip("tone.wav"), true);
        QTRY_VERIFY(hasEnded);
        const auto value = [&engine](const char* property) {
            char* const text = MpvLibrary::shared()->get_property_string(engine.mpv()->raw(), property);
            const QByteArray copied(text);
            MpvLibrary::shared()->free(text);
            return copied;
        };
        QVERIFY2(value("ao").startsWith("pipewire,pulse,alsa"), value("ao"));
        const QByteArray chosen = value("current-ao");
        QVERIFY2(QByteArrayList({"pipewire", "pulse", "alsa", "null"}).contains(chosen), chosen);
    }

    void namesAreTakenAsTheyAre_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"a%20b.mp4", "what? #1 & more.mp4", "\xc3\xa4 \xe6\x97\xa5\xe6\x9c\xac.mp4",
                                 "-vo=x.mp4", "http:--x.mp4", "new\nline \"quoted\".mp4", "mf.mp4"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void namesAreTakenAsTheyAre() {
        QFETCH(QString, name);
        Player player;
        const Location file = player.home.path().child(QStringView(name));
        QVERIFY(QFile::copy(Clips::clip("blink.mp4").toString(), file.toString()));
        player.engine.load(file, true);
        QTRY_COMPARE(player.ends, 1);
    }

    void twentyPlayersComeAndGo() {
        QElapsedTimer timer;
        for (int i = 0; i < 20; ++i) {
            auto player = std::make_unique<Player>();
            player->engine.load(Clips::clip("h264.mp4"), true);
            if (i % 2)
                QTRY_VERIFY(player->engine.duration() > 0);
            timer.start();
            player.reset();
            QVERIFY(timer.elapsed() < 1000);
        }
    }
};

QTEST_GUILESS_MAIN(tst_PlayerEngineClips)
#include "tst_playerengineclips.moc"
