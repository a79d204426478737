// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"

#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/fanotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;

// What the player makes of files: sound ones of all kinds, and broken ones.
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
        QTRY_VERIFY_WITH_TIMEOUT(player.engine.duration() > 0, 20'000);
        QTRY_COMPARE(player.engine.videoSize(), size);
        QTEST(player.engine.codec(), "codec");
        QFETCH(double, duration);
        QVERIFY2(std::abs(player.engine.duration() - duration) < 0.12, QByteArray::number(player.engine.duration()));
        QTRY_COMPARE_WITH_TIMEOUT(player.ends, 1, 20'000);
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
        engine.load(Clips::clip(film ? "h264.mp4" : "tone.wav"), true);
        QTRY_VERIFY_WITH_TIMEOUT(hasEnded, 20'000);
        QCOMPARE(engine.time(), engine.duration());
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

    void whatIsNoFilmIsNothing_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("This is no film, only words.\n").repeated(50);
        QTest::newRow("zeros") << QByteArray(100'000, '\0');
        QTest::newRow("the beginning of a film") << bytesOf("h264.mp4").first(200);
        // A player that followed these would play what they name.
        const QByteArray other = Clips::clip("h264.mp4").path();
        QTest::newRow("a list of files") << QByteArray("#EXTM3U\n#EXTINF:1,\n" + other + '\n');
        QTest::newRow("a list of a stream's parts") << QByteArray(
            "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-VERSION:3\n#EXTINF:2,\n" + other + "\n#EXT-X-ENDLIST\n");
        QTest::newRow("a list for joining") << QByteArray("ffconcat version 1.0\nfile '" + other + "'\n");
        QTest::newRow("an edit list") << QByteArray("# mpv EDL v0\n" + other + ",0,1\n");
    }
    void whatIsNoFilmIsNothing() {
        QFETCH(QByteArray, bytes);
        Player player;
        player.engine.load(player.home.file("film.mp4", bytes), true);
        QVERIFY(player.engine.isPlaying());
        QTRY_VERIFY(!player.engine.isPlaying());
        QCOMPARE(player.engine.duration(), 0.0);
        QVERIFY(player.engine.videoSize().isEmpty());
        QCOMPARE(player.ends, 0);
        player.engine.play();
        QVERIFY(!player.engine.isPlaying());
        // It is over with that one.
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
    }

    void aMissingFileIsNothing() {
        Player player;
        player.engine.load(player.home.path().child("missing.mp4"), true);
        QTRY_VERIFY(!player.engine.isPlaying());
        QCOMPARE(player.ends, 0);
    }

    void aFolderIsNothing() {
        Player player;
        player.engine.load(player.home.folder("folder.mp4"), true);
        QTRY_VERIFY(!player.engine.isPlaying());
    }

    void aFilmOfWhichOnlyAPartIsThereEndsWhereItEnds() {
        Player player;
        const Location file = player.home.path().child("part.mp4");
        Clips::copyTruncated(Clips::clip("long.mp4"), file, 0.3);
        player.engine.load(file, true);
        QTRY_COMPARE(player.engine.duration(), 10.0);
        QTRY_COMPARE_WITH_TIMEOUT(player.ends, 1, 20'000);
        QVERIFY(!player.engine.isPlaying());
        player.engine.play();
        QTRY_VERIFY(player.engine.time() > 0.2);
    }

    void aSeekIntoThePartThatIsMissingIsNoTrap() {
        Player player;
        const Location file = player.home.path().child("part.mp4");
        Clips::copyTruncated(Clips::clip("long.mp4"), file, 0.3);
        player.open(file);
        player.engine.seek(9, true);
        player.engine.play();
        QTRY_VERIFY_WITH_TIMEOUT(!player.engine.isPlaying(), 20'000);
        player.engine.seek(1, true);
        QVERIFY(player.settlesAt(1));
    }

    void aDamagedFilmPlaysOn_data() {
        QTest::addColumn<QString>("suffix");
        for (const char* clip : {"h264.mp4", "vp9.webm", "theora.ogv", "tone.mp3", "tone.flac"})
            QTest::newRow(clip) << QString::fromLatin1(clip).section(QLatin1Char('.'), 1);
    }
    void aDamagedFilmPlaysOn() {
        QFETCH(QString, suffix);
        Player player;
        const Location file = player.home.path().child(QStringView(QString(QStringLiteral("damaged.") + suffix)));
        Clips::copyDamaged(Clips::clip(QTest::currentDataTag()), file);
        player.engine.load(file, true);
        QTRY_VERIFY_WITH_TIMEOUT(!player.engine.isPlaying(), 20'000);
        player.engine.load(Clips::clip("tone.wav"), true);
        QTRY_VERIFY(player.engine.time() > 0.2);
    }

    void aFilmThatIsRemovedWhileItPlaysPlaysOn() {
        Player player;
        const Location file = copy(player, "h264.mp4");
        player.engine.load(file, true);
        QTRY_VERIFY(player.engine.time() > 0.2);
        QVERIFY(QFile::remove(file.toString()));
        QTRY_COMPARE(player.ends, 1);
    }

    void aFilmThatIsReplacedWhileItPlaysPlaysOn() {
        Player player;
        const Location file = copy(player, "h264.mp4");
        player.engine.load(file, true);
        QTRY_VERIFY(player.engine.time() > 0.2);
        const Location other = player.home.file("other", "no film");
        QCOMPARE(std::rename(other.path().constData(), file.path().constData()), 0);
        QTRY_COMPARE(player.ends, 1);
    }

    void aFilmThatIsCutOffWhileItPlaysEnds() {
        Player player;
        const Location file = copy(player, "long.mp4");
        player.engine.load(file, true);
        QTRY_VERIFY(player.engine.time() > 0.2);
        QCOMPARE(::truncate(file.path().constData(), 20'000), 0);
        player.engine.seek(5, true);
        QTRY_VERIFY_WITH_TIMEOUT(!player.engine.isPlaying(), 20'000);
    }

    void aPipeIsNothing() {
        Player player;
        const Location pipe = player.home.path().child("pipe.mp4");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        player.engine.load(pipe, true);
        QTRY_VERIFY(!player.engine.isPlaying());
    }

    // As on a share that has gone: calls on the file do not return.
    void aFileThatNeverAnswersHoldsNothingUp_data() {
        QTest::addColumn<quint64>("call");
        QTest::newRow("opening") << quint64(FAN_OPEN_PERM);
        QTest::newRow("reading") << quint64(FAN_ACCESS_PERM);
    }
    void aFileThatNeverAnswersHoldsNothingUp() {
        QFETCH(quint64, call);
        std::optional<Player> player(std::in_place);
        const Location file = copy(*player, "h264.mp4");
        const Location second = player->home.file("second.mp4", bytesOf("h264.mp4"));
        const int watch = ::fanotify_init(FAN_CLASS_CONTENT | FAN_CLOEXEC, O_RDONLY | O_CLOEXEC);
        if (watch < 0)
            QSKIP("no file can be made to hang here");
        const auto answerAll = qScopeGuard([watch] { ::close(watch); });
        for (const Location& hanging : {file, second})
            if (::fanotify_mark(watch, FAN_MARK_ADD, call, AT_FDCWD, hanging.path().constData()) != 0)
                QSKIP("no file can be made to hang here");

        QElapsedTimer timer;
        timer.start();
        player->engine.load(file, true);
        QTRY_VERIFY(hangs(watch));
        QVERIFY(player->engine.isPlaying());
        player->engine.seek(1, true);
        player->engine.shuttle(-1);
        player->engine.load(second, true);
        player->engine.stop();
        player->engine.load(file, true);
        player->engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player->ends, 1);
        player->engine.load(second, true);
        timer.start();
        player.reset();
        QVERIFY(timer.elapsed() < 1000);
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

private:
    static QByteArray bytesOf(const char* clip) {
        QFile file(Clips::clip(clip).toString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static Location copy(const Player& player, const char* clip) { return player.home.file("film.mp4", bytesOf(clip)); }

    // Somebody waits for the watch to let him go on.
    static bool hangs(int watch) {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(watch, &set);
        timeval now{0, 0};
        return ::select(watch + 1, &set, nullptr, nullptr, &now) == 1;
    }
};

QTEST_GUILESS_MAIN(tst_PlayerEngineClips)
#include "tst_playerengineclips.moc"
