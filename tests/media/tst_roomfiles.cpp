// The screening room on files that are not what they were: gone, renamed, changed, or of no use.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"

#include <QtTest>

using namespace lumbra;

class tst_RoomFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileThatVanishesStaysOnShow() {
        Room room;
        const Location file = room.picture("p/a.png");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", "p/b.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(QFile::remove(file.toString()));
        QTRY_VERIFY(!room.library->index().contains(file));
        QCOMPARE(screening.asset(), screening.request().asset);
        QVERIFY(!screening.stillImage().isNull());
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
        screening.go(-1);
        QCOMPARE(screening.name(), named("a.png"));
        screening.close();
        QVERIFY(!room.library->playing());
    }

    void entriesThatAreGoneAreEmptyStagesThatTheArrowsLeave_data() {
        QTest::addColumn<QByteArray>("gone");
        for (const char* const gone : {"p/gone.png", "p/gone.mp4", "p/gone.webm", "p/gone.wav", "p/gone.pdf"})
            QTest::newRow(gone) << QByteArray(gone);
    }
    void entriesThatAreGoneAreEmptyStagesThatTheArrowsLeave() {
        QFETCH(QByteArray, gone);
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png", Qt::blue);
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png", gone.constData(), "p/b.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        screening.go(1);
        QCOMPARE(screening.path(), room.path(gone.constData()));
        QVERIFY(screening.stillImage().isNull());
        QTRY_VERIFY(!screening.engine()->isPlaying());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QCOMPARE(screening.stillImage().pixelColor(1, 1), QColor(Qt::blue));
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }

    void aFileThatIsRenamedStaysOnShow() {
        Room room;
        const Location file = room.clip("p/a.mp4");
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(screening.engine()->duration() > 0);
        QVERIFY(QFile::rename(file.toString(), room.path("p/other.mp4").toString()));
        QTRY_VERIFY(!room.library->index().contains(file));
        QCOMPARE(screening.path(), file);
        QVERIFY(screening.engine()->isPlaying());
        screening.go(1);
        QCOMPARE(screening.name(), named("b.png"));
    }

    void aFileThatChangesIsShownAnew() {
        Room room;
        room.picture("p/a.png", Qt::red, {64, 48});
        ScreeningRoom& screening = room.open("p/a.png", {"p/a.png"});
        QTRY_VERIFY(!screening.stillImage().isNull());
        const Date before = screening.asset().modified;
        room.picture("p/a.png", Qt::blue, {80, 60});
        QTRY_VERIFY(screening.asset().modified != before);
        QTRY_VERIFY(!screening.stillImage().isNull() && screening.stillImage().pixelColor(1, 1) == QColor(Qt::blue));
        QTRY_VERIFY(screening.meta().startsWith(named("80 × 60 · ")));
    }

    void aFilmThatBecomesWholeIsPlayed() {
        Room room;
        room.home.file("Library/p/a.mp4", "not yet");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(!screening.engine()->isPlaying());
        room.clip("p/a.mp4");
        QTRY_VERIFY(screening.engine()->duration() > 0 && screening.engine()->isPlaying());
    }

    void aFilmThatChangesWhileItPlaysPlaysOn() {
        Room room;
        room.clip("p/a.mp4");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4"});
        QTRY_VERIFY(screening.engine()->time() > 0.2);
        const Date before = screening.asset().modified;
        TestHome::touch(room.path("p/a.mp4"), before.seconds - 100);
        QTRY_VERIFY(screening.asset().modified != before);
        QVERIFY(screening.engine()->isPlaying());
        QVERIFY(screening.engine()->time() > 0.2);
    }

    void aFilmOfAnUnknownCodecLeavesTheArrowsAtWork() {
        Room room;
        const Location film = room.clip("p/a.mp4", "silent.mp4");
        QFile file(film.toString());
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray bytes = file.readAll().replace("avc1", "zzzz");
        QVERIFY(file.seek(0) && file.write(bytes) == bytes.size());
        file.close();
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(!screening.engine()->isPlaying()); // it has played to its end, or failed
        QVERIFY(screening.isOpen());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }

    void whatNothingCanPlayLeavesTheArrowsAtWork() {
        Room room;
        room.home.file("Library/p/a.mp4", QByteArray(5000, 'x'));
        room.picture("p/b.png");
        ScreeningRoom& screening = room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        QTRY_VERIFY(!screening.engine()->isPlaying());
        QVERIFY(!room.library->lastError());
        QVERIFY(screening.handle(Qt::Key_Down, Qt::NoModifier, QString()));
        QCOMPARE(screening.name(), named("b.png"));
        QTRY_VERIFY(!screening.stillImage().isNull());
        QVERIFY(screening.handle(Qt::Key_Escape, Qt::NoModifier, named("\x1b")));
        QVERIFY(!room.library->playing());
    }
};

QTEST_MAIN(tst_RoomFiles)
#include "tst_roomfiles.moc"
