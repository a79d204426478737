// The screening room as it looks and answers the pointer.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomWindow.h"
#include "media/room/AmbientGlow.h"
#include "media/room/FilmSight.h"
#include "media/room/Glow.h"
#include "media/room/StagePicture.h"

#include <QGuiApplication>
#include <QtTest>

using namespace lumbra;

namespace {

QString text(const char* words) {
    return QString::fromUtf8(words);
}

bool isNear(const QColor& a, const QColor& b, int tolerance = 40) {
    return std::abs(a.red() - b.red()) < tolerance && std::abs(a.green() - b.green()) < tolerance
           && std::abs(a.blue() - b.blue()) < tolerance;
}

bool hasOpenGl() {
    return QGuiApplication::platformName() != u"offscreen";
}

// Two pictures, the queue put away.
struct TwoPictures {
    TwoPictures() {
        room.picture("p/a.png", Qt::red, {800, 600});
        room.picture("p/b.png", Qt::blue, {800, 600});
        room.preferences.setValue(text("playerQueue"), false);
        room.open("p/a.png", {"p/a.png", "p/b.png"});
        window = std::make_unique<RoomWindow>(room);
    }

    Room room;
    std::unique_ptr<RoomWindow> window;
};

} // namespace

class tst_ScreeningRoomView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anImageStandsWholeBetweenTheBarAndTheFoot() {
        TwoPictures two;
        QTRY_VERIFY(isNear(two.window->at(0.5, 0.5), Qt::red));
        auto* const still = two.window->window.find<StagePicture>("still");
        QTRY_COMPARE(still->image().height(), int(still->height())); // a smaller one may stand in for it until then
        QVERIFY(still->y() >= 52);
        QVERIFY(still->y() + still->height() <= 540 - 40);
        // 4 to 3, in the middle.
        const QRectF place = StagePicture::place(still->size(), still->image().size(), 1);
        QVERIFY(isNear(two.window->at((still->x() + place.left() + 3) / 900, 0.5), Qt::red));
        QVERIFY(!isNear(two.window->at((still->x() + place.left() - 6) / 900, 0.5), Qt::red, 100));
    }

    void theNextImageTakesItsPlaceInOneFrame() {
        TwoPictures two;
        QTRY_COMPARE(two.room.room->stillsHeld(), 2);
        QTRY_VERIFY(isNear(two.window->at(0.5, 0.5), Qt::red));
        two.room.room->go(1);
        QVERIFY(isNear(two.window->at(0.5, 0.5), Qt::blue)); // the very next frame
    }

    void aPictureStandsPixelForPixelWhereItWasDecodedForThePlace() {
        QCOMPARE(StagePicture::place({300, 200}, {300, 150}, 1), QRectF(0, 25, 300, 150));
        QCOMPARE(StagePicture::place({300, 200}, {299, 150}, 1), QRectF(1, 25, 299, 150)); // not blurred by a pixel
        QCOMPARE(StagePicture::place({300, 201}, {300, 150}, 1), QRectF(0, 26, 300, 150));
        QCOMPARE(StagePicture::place({300, 200}, {600, 300}, 2), QRectF(0, 25, 300, 150));
        QCOMPARE(StagePicture::place({300, 200}, {30, 20}, 1), QRectF(0, 0, 300, 200));
        QCOMPARE(StagePicture::place({300, 200}, {30, 20}, 1, false), QRectF(135, 90, 30, 20));
        QCOMPARE(StagePicture::place({300, 200}, {30, 20}, 2, false), QRectF(135, 90, 30, 20));
        QCOMPARE(StagePicture::place({300, 200}, {600, 300}, 2, false), QRectF(0, 25, 300, 150));
        QVERIFY(StagePicture::place({300, 200}, {}, 1).isEmpty());
        QVERIFY(StagePicture::place({}, {30, 20}, 1).isEmpty());
    }

    void theGlowOfThePictureColoursTheRoom() {
        TwoPictures two;
        auto* const glow = two.window->window.root()->findChild<AmbientGlow*>();
        QTRY_VERIFY(!glow->target().isNull());
        QVERIFY(isNear(glow->target().pixelColor(80, 50), Qt::red, 4));
        QTRY_COMPARE(glow->progress(), 1.0);
        const QColor seen = two.window->at(0.03, 0.5);
        QVERIFY2(seen.red() > seen.blue() + 30, qPrintable(seen.name()));
        two.room.room->go(1);
        QTRY_VERIFY(isNear(glow->target().pixelColor(80, 50), Qt::blue, 4));
        QVERIFY(glow->progress() < 1); // on its way
        QTRY_COMPARE(glow->progress(), 1.0);
    }

    void aChangeOfTheGlowBeginsWithWhatIsSeen() {
        AmbientGlow glow;
        static_cast<QQmlParserStatus&>(glow).componentComplete();
        QImage red(4, 4, QImage::Format_RGB32), blue(red);
        red.fill(Qt::red);
        blue.fill(Qt::blue);
        QSignalSpy changes(&glow, &AmbientGlow::changed);
        glow.setPicture(red);
        glow.setProgress(1);
        glow.setPicture(blue);
        QCOMPARE(changes.count(), 2);
        glow.setPicture(blue.copy()); // looks the same
        QCOMPARE(changes.count(), 2);
        glow.setPicture({});
        QVERIFY(glow.target().isNull());
        glow.setAccent(QColor(255, 159, 67));
        glow.setSound(true);
        QCOMPARE(glow.target(), Glow::ofSound(QColor(255, 159, 67)));
    }

    void theBarTellsWhereTheFileLiesAndWhatItIs() {
        TwoPictures two;
        QTRY_COMPARE(two.window->window.value("roomBreadcrumb", "text").toString(), text("p"));
        QTRY_VERIFY(two.window->window.value("roomMeta", "text").toString().endsWith(text(" · 1 of 2")));
    }

    void theButtonsOfTheBarDoWhatTheySay() {
        TwoPictures two;
        QmlWindow& window = two.window->window;
        QCOMPARE(window.value("roomStar", "hint").toString(), text("Star (S)"));
        QCOMPARE(window.value("roomStar", "text").toString(), text("Star"));
        window.click("roomStar");
        QTRY_VERIFY(two.room.room->isStarred());
        QTRY_COMPARE(window.value("roomStar", "text").toString(), text("Starred"));
        QCOMPARE(window.value("roomInfo", "hint").toString(), text("Info (I)"));
        window.click("roomInfo");
        QVERIFY(two.room.room->showInfo());
        window.click("roomInfo");
        QVERIFY(!two.room.room->showInfo());
        window.click("roomQueue");
        QVERIFY(two.room.room->showQueue());
        QTRY_VERIFY(window.find<QQuickItem>("queue")->isVisible());
        for (const auto& [name, said] : {std::pair{"roomShare", "Share"},
                                         {"roomReveal", "Show in Finder"},
                                         {"roomQueue", "Up next"},
                                         {"roomBack", "Back to the library (Esc)"}})
            QCOMPARE(window.value(name, "text").toString(), text(said));
        QVERIFY(two.room.room->focused()); // a click takes no keys away
        window.click("roomBack");
        QVERIFY(!two.room.library->playing());
    }

    void theQueueStandsBesideTheStage() {
        TwoPictures two;
        auto* const still = two.window->window.find<StagePicture>("still");
        const double whole = still->width();
        two.room.room->toggleQueue();
        QTRY_COMPARE(still->width(), whole - 316 - 2 * 8);
        QCOMPARE(two.room.room->stageWidth(), still->width());
        two.room.room->toggleInfo(); // the drawer takes its place in a narrow room
        QTRY_COMPARE(still->width(), whole - 320 - 2 * 6);
    }

    void theCapsuleIsThereForThePlayerAlone() {
        Room room;
        room.clip("p/a.mp4");
        room.picture("p/b.png");
        room.preferences.setValue(text("playerQueue"), false);
        room.open("p/a.mp4", {"p/a.mp4", "p/b.png"});
        RoomWindow window(room);
        QTRY_VERIFY(window.window.find<QQuickItem>("scrubber")->isVisible());
        room.room->go(1);
        QTRY_VERIFY(!window.window.root()->findChild<QQuickItem*>(text("scrubber")));
    }

    void thePointerShowsTheControlsAgain() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        room.open("p/a.mp4", {"p/a.mp4"});
        RoomWindow window(room);
        QTest::mouseMove(window.window.window(), {450, 200});
        room.now = room.now + 3;
        QTRY_VERIFY(!room.room->chrome());
        QTRY_VERIFY(!window.window.find<QQuickItem>("roomBack")->isVisible());
        QTest::mouseMove(window.window.window(), {460, 210});
        QTRY_VERIFY(room.room->chrome());
        QTRY_VERIFY(window.window.find<QQuickItem>("roomBack")->isVisible());
    }

    void aClickOnTheFilmPlaysAndPauses() {
        Room room;
        room.clip("p/a.mp4", "hours.mp4");
        room.open("p/a.mp4", {"p/a.mp4"});
        RoomWindow window(room);
        QVERIFY(room.room->engine()->isPlaying());
        window.window.click("film");
        QVERIFY(!room.room->engine()->isPlaying());
        window.window.click("film");
        QVERIFY(room.room->engine()->isPlaying());
    }

    void theRoomKeepsThePointerFromWhatLiesBehind() {
        TwoPictures two;
        QSignalSpy wheel(two.window->window.window(), &QQuickWindow::frameSwapped);
        QTest::mouseClick(two.window->window.window(), Qt::LeftButton, {}, {450, 300});
        QVERIFY(two.room.room->isOpen());
        QVERIFY(two.room.room->focused());
    }

    void itFadesAsItClosesAndSaysWhenItIsGone() {
        TwoPictures two;
        QTRY_VERIFY(isNear(two.window->at(0.5, 0.5), Qt::red));
        two.room.room->close();
        QVERIFY(isNear(two.window->at(0.5, 0.5), Qt::red, 120)); // the picture goes along
        QVERIFY(two.window->window.value("room", "opacity").toDouble() > 0);
        QTRY_COMPARE(two.window->window.root()->property("fades").toInt(), 1);
        QCOMPARE(two.window->window.value("room", "opacity").toDouble(), 0.0);
    }

    // Films, which need OpenGL.

    void aFilmShowsItsOwnPictureAndNeverThatOfTheOneBefore() {
        if (!hasOpenGl())
            QSKIP("there is no OpenGL without a display");
        Room room;
        room.clip("p/a.mp4", "halves.mp4"); // red above, blue below
        room.clip("p/b.mp4", "silent.mp4");
        room.preferences.setValue(text("playerQueue"), false);
        room.open("p/a.mp4", {"p/a.mp4", "p/b.mp4"});
        RoomWindow window(room);
        auto* const sight = window.window.root()->findChild<FilmSight*>();
        QVERIFY(sight);
        QTRY_VERIFY(sight->isItself());
        QTRY_VERIFY(isNear(window.at(0.5, 0.3), Qt::red, 90));
        room.room->go(1);
        for (int frame = 0; frame < 30 && !sight->isItself(); ++frame)
            QVERIFY(!isNear(window.at(0.5, 0.3), Qt::red, 90));
        QTRY_VERIFY(sight->isItself());
    }

    void aFilmFadesWithTheRoom() {
        if (!hasOpenGl())
            QSKIP("there is no OpenGL without a display");
        Room room;
        room.clip("p/a.mp4", "halves.mp4");
        room.open("p/a.mp4", {"p/a.mp4"});
        RoomWindow window(room);
        QTRY_VERIFY(isNear(window.at(0.5, 0.3), Qt::red, 90));
        room.room->close();
        const QColor seen = window.at(0.5, 0.3); // the player has stopped
        QVERIFY2(seen.red() > seen.blue() + 60, qPrintable(seen.name()));
        QTRY_COMPARE(window.window.root()->property("fades").toInt(), 1);
    }

    void aFilmThatStandsAtItsBeginningSaysSo() {
        if (!hasOpenGl())
            QSKIP("there is no OpenGL without a display");
        Room room;
        room.clip("p/a.mp4");
        room.open("p/a.mp4", {"p/a.mp4"});
        RoomWindow window(room);
        auto* const sight = window.window.root()->findChild<FilmSight*>();
        QTRY_VERIFY(sight->isItself());
        auto* const sign = window.window.find<QQuickItem>("playSign");
        QVERIFY(!sign->isVisible());
        room.standAt(0);
        QTRY_VERIFY(sign->isVisible());
        room.standAt(1);
        QVERIFY(!sign->isVisible());
    }

    void theFilmGlows() {
        if (!hasOpenGl())
            QSKIP("there is no OpenGL without a display");
        Room room;
        room.clip("p/a.mp4", "halves.mp4");
        room.open("p/a.mp4", {"p/a.mp4"});
        RoomWindow window(room);
        auto* const glow = window.window.root()->findChild<AmbientGlow*>();
        QTRY_VERIFY(!room.room->engine()->glowFrame().isNull());
        QTRY_VERIFY(isNear(glow->target().pixelColor(80, 5), Qt::red, 90));
        QVERIFY(isNear(glow->target().pixelColor(80, 95), Qt::blue, 90));
    }
};

int main(int argc, char** argv) {
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != u"offscreen")
        QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    tst_ScreeningRoomView test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_screeningroomview.moc"
