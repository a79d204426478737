// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"
#include "support/StallingShare.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/fanotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;

// What the player makes of files that are broken, or change, or go, or never answer.
class tst_PlayerEngineTrouble : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        player.engine.setSpeed(4);
        player.engine.load(file, true);
        QTRY_COMPARE(player.engine.duration(), 10.0);
        QTRY_COMPARE(player.ends, 1);
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
        QTRY_VERIFY(!player.engine.isPlaying());
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
        player.engine.setSpeed(4);
        player.engine.load(file, true);
        QTRY_VERIFY(!player.engine.isPlaying());
        player.engine.load(Clips::clip("tone.wav"), true);
        QTRY_VERIFY(player.engine.time() > 0.2);
    }

    void aFilmWhoseHeaderPromisesTooMuchPlaysAsFarAsItGoes_data() {
        QTest::addColumn<QByteArray>("box");
        QTest::addColumn<int>("at");
        QTest::newRow("pictures of 65,535 by 65,535") << QByteArray("avc1") << 28;
        QTest::newRow("400 hours") << QByteArray("mvhd") << 20;
        QTest::newRow("samples without number") << QByteArray("stsz") << 12;
    }
    void aFilmWhoseHeaderPromisesTooMuchPlaysAsFarAsItGoes() {
        QFETCH(QByteArray, box);
        QFETCH(int, at);
        QByteArray bytes = bytesOf("silent.mp4");
        const qsizetype found = bytes.indexOf(box);
        QVERIFY(found > 0);
        bytes.replace(found + at, 4, QByteArray("\x7f\xff\xff\xff"));
        Player player;
        player.engine.setSpeed(4);
        player.engine.load(player.home.file("film.mp4", bytes), true);
        QTRY_VERIFY(!player.engine.isPlaying());
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_VERIFY(player.engine.time() > 0.1);
    }

    void manyFilesLeaveNothingBehind() {
        Player player;
        player.open("h264.mp4");
        player.engine.stop();
        QTRY_COMPARE(player.value("idle-active"), "yes");
        const qsizetype files = entries("/proc/self/fd");
        const qsizetype threads = entries("/proc/self/task");
        for (int round = 0; round < 20; ++round) {
            player.engine.load(Clips::clip(round % 2 ? "h264.mp4" : "tone.wav"), true);
            if (round % 3)
                QTRY_VERIFY(player.engine.duration() > 0);
        }
        player.engine.stop();
        QTRY_COMPARE(player.value("idle-active"), "yes");
        QTRY_VERIFY(entries("/proc/self/fd") <= files);
        QTRY_VERIFY(entries("/proc/self/task") <= threads);
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
        QTRY_VERIFY(!player.engine.isPlaying());
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

    void aShareThatStopsAnsweringWhileAFilmPlaysHoldsNothingUp() {
        const TestHome home;
        const Location folder = home.folder("share");
        StallingShare share(folder, {{"film.mp4", bytesOf("long.mp4")}, {"other.mp4", bytesOf("h264.mp4")}});
        if (!share.isMounted())
            QSKIP("no file system can be mounted here");
        std::optional<Player> player(std::in_place);
        player->engine.load(folder.child("film.mp4"), true);
        QTRY_VERIFY(player->engine.time() > 0.2);
        share.stall();
        player->engine.seek(8, true);
        QTRY_VERIFY(share.asked() > 0);
        QVERIFY(player->engine.isPlaying()); // it may answer yet
        player->engine.load(folder.child("other.mp4"), true);
        player->engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player->ends, 1);
        player->engine.load(folder.child("film.mp4"), true);
        QElapsedTimer timer;
        timer.start();
        player.reset();
        QVERIFY2(timer.elapsed() < 1000, QByteArray::number(timer.elapsed()));
    }

private:
    static QByteArray bytesOf(const char* clip) {
        QFile file(Clips::clip(clip).toString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static Location copy(const Player& player, const char* clip) { return player.home.file("film.mp4", bytesOf(clip)); }

    static qsizetype entries(const char* folder) {
        return QDir(QString::fromLatin1(folder))
            .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
            .size();
    }

    // Somebody waits for the watch to let him go on.
    static bool hangs(int watch) {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(watch, &set);
        timeval now{0, 0};
        return ::select(watch + 1, &set, nullptr, nullptr, &now) == 1;
    }
};

QTEST_GUILESS_MAIN(tst_PlayerEngineTrouble)
#include "tst_playerenginetrouble.moc"
