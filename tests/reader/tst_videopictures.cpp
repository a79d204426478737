// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFiles.h"

#include <QtTest>

using namespace lumbra;

class tst_VideoPictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void aFilmIsShownAfterATenth() {
        film("tenth.mp4", "color=red:s=640x360:d=0.5:r=20[a];color=blue:s=640x360:d=9.5:r=20[b];[a][b]concat");
        QVERIFY(isNear(thumbnail("tenth.mp4").pixelColor(100, 60), Qt::blue, 40));
    }

    void aFilmThatBeginsBlackIsShownWhereItIsNot() {
        film("fade.mp4", "color=black:s=640x360:d=3:r=20[a];color=red:s=640x360:d=7:r=20[b];[a][b]concat");
        QVERIFY(isNear(thumbnail("fade.mp4").pixelColor(100, 60), Qt::red, 40));
    }

    void aFilmOfNothingButBlackIsBlack() {
        film("night.mp4", "color=black:s=640x360:d=2:r=20");
        const QImage image = thumbnail("night.mp4");
        QCOMPARE(image.size(), QSize(240, 135));
        QVERIFY(isNear(image.pixelColor(100, 60), Qt::black));
    }

    void aFilmOfOnePictureIsThatPicture() {
        film("still.mp4", "color=red:s=640x360:d=0.05:r=20");
        QVERIFY(isNear(thumbnail("still.mp4").pixelColor(100, 60), Qt::red, 40));
    }

    void aTurnedFilmIsUpright() {
        make("a.mp4");
        run("ffmpeg", {"-i", "a.mp4", "-c", "copy", "-metadata:s:v", "rotate=90", "turned.mp4"});
        const QImage image = thumbnail("turned.mp4");
        QCOMPARE(image.size(), QSize(180, 240));
        // As players show it: the upper right quarter has come to the upper left.
        QVERIFY(isNear(at(image, 0.25, 0.25), Qt::green, 40));
        QVERIFY(isNear(at(image, 0.75, 0.25), Qt::white, 40));
    }

    void aStretchedFilmHasItsShownProportions() {
        film("stretched.mp4", "color=red:s=320x360:d=1:r=20,setsar=2");
        QCOMPARE(thumbnail("stretched.mp4").size(), QSize(240, 135));
    }

    // Its index stands before its pictures, of which some share is there.
    void aFilmThatHoldsLessThanItsHeaderPromisesShowsWhatItHolds_data() {
        QTest::addColumn<double>("share");
        QTest::newRow("half of it") << 0.5;
        QTest::newRow("less than the tenth that is looked at") << 0.08;
    }

    void aFilmThatHoldsLessThanItsHeaderPromisesShowsWhatItHolds() {
        QFETCH(double, share);
        run("ffmpeg", {"-f", "lavfi", "-i", "testsrc2=s=640x360:d=10:r=20", "-vf", "noise=alls=20", "-pix_fmt",
                       "yuv420p", "-g", "5", "-movflags", "+faststart", "whole.mp4"});
        const QByteArray film = read("whole.mp4");
        write("promises.mp4", film.left(qsizetype(double(film.size()) * share)));
        QCOMPARE(thumbnail("promises.mp4").size(), QSize(240, 135));
    }

    void aFilmThatHoldsNothingOfWhatItsHeaderPromisesIsNothing() {
        run("ffmpeg", {"-f", "lavfi", "-i", "testsrc2=s=640x360:d=2:r=20", "-pix_fmt", "yuv420p", "-movflags",
                       "+faststart", "empty.mp4"});
        const QByteArray film = read("empty.mp4");
        write("hollow.mp4", film.left(film.indexOf("mdat") + 8));
        QVERIFY(thumbnail("hollow.mp4").isNull());
    }

    void soundAloneIsNothing() {
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "sound.m4a"});
        QVERIFY(thumbnail("sound.m4a").isNull());
    }

    // A list of files is no container: it would make the reader open what it names.
    void aListOfFilesIsNothing() {
        make("a.mp4");
        write("list.mp4", "#EXTM3U\n#EXTINF:1,\n" + path("a.mp4").toUtf8() + '\n');
        QVERIFY(thumbnail("list.mp4").isNull());
        write("list.mpg", "ffconcat version 1.0\nfile '" + path("a.mp4").toUtf8() + "'\n");
        QVERIFY(thumbnail("list.mpg").isNull());
    }
};

QTEST_MAIN(tst_VideoPictures)
#include "tst_videopictures.moc"
