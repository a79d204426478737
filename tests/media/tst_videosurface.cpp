// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerFixture.h"
#include "media/player/PictureInPicture.h"
#include "media/player/SurfaceSwitch.h"
#include "media/player/VideoSurface.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QtTest>

using namespace lumbra;

namespace {

// A window with a surface that fills it.
struct Stage {
    explicit Stage(PlayerEngine& engine, const QSize& size = QSize(320, 180)) {
        window.setColor(Qt::green);
        window.resize(size);
        fill();
        surface->setPlayer(&engine);
        QObject::connect(&window, &QWindow::widthChanged, &window, [this] { fill(); });
        QObject::connect(&window, &QWindow::heightChanged, &window, [this] { fill(); });
        window.show();
        if (!QTest::qWaitForWindowExposed(&window, lumbra::patience))
            qFatal("the window does not show");
    }

    void fill() {
        if (surface)
            surface->setSize(window.size());
    }

    QColor at(double x, double y) {
        const QImage image = window.grabWindow();
        return image.pixelColor(int(x * image.width()), int(y * image.height()));
    }

    QQuickWindow window;
    QPointer<VideoSurface> surface = new VideoSurface(window.contentItem());
};

bool isNear(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) < 40 && std::abs(a.green() - b.green()) < 40
           && std::abs(a.blue() - b.blue()) < 40;
}

} // namespace

class tst_VideoSurface : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (QGuiApplication::platformName() == u"offscreen")
            QSKIP("there is no OpenGL without a display");
    }

    void showsThePictureUprightAndWhole() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        const QImage image = stage.window.grabWindow();
        const auto pixel = [&](double x, double y) {
            return image.pixelColor(int(x * image.width()), int(y * image.height()));
        };
        QVERIFY(isNear(pixel(0.02, 0.05), Qt::red));
        QVERIFY(isNear(pixel(0.98, 0.45), Qt::red));
        QVERIFY(isNear(pixel(0.5, 0.55), Qt::blue));
        QVERIFY(isNear(pixel(0.02, 0.95), Qt::blue));
    }

    void whatThePictureLeavesFreeIsTransparent() {
        Player player;
        Stage stage(player.engine, QSize(300, 300));
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.4), Qt::red));
        QVERIFY(isNear(stage.at(0.5, 0.05), Qt::green));
        QVERIFY(isNear(stage.at(0.5, 0.95), Qt::green));
    }

    // The first picture at a new size fills it: nothing stretches and nothing slides there.
    void isDrawnAnewForEachSizeInTheSameFrame() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        for (const QSize& size : {QSize(480, 270), QSize(200, 200), QSize(640, 360)}) {
            stage.window.resize(size);
            QTRY_COMPARE(stage.surface->size(), QSizeF(size)); // the window hears of its new size by an event
            QCOMPARE(stage.window.size(), size);
            const QSize film = QSize(160, 90).scaled(size, Qt::KeepAspectRatio);
            const QImage image = stage.window.grabWindow();
            const int top = (size.height() - film.height()) / 2;
            QVERIFY(isNear(image.pixelColor(size.width() / 2, top + 4), Qt::red));
            QVERIFY(isNear(image.pixelColor(3, size.height() / 2 - film.height() / 4), Qt::red));
            QVERIFY(isNear(image.pixelColor(size.width() - 4, size.height() / 2 + film.height() / 4), Qt::blue));
            QVERIFY(isNear(image.pixelColor(size.width() / 2, size.height() - top - 5), Qt::blue));
        }
    }

    void aFileThatWasLoadedBeforeTheSurfaceCameIsShown() {
        Player player;
        player.open("halves.mp4");
        player.engine.seek(1, true);
        QVERIFY(player.settlesAt(1));
        Stage stage(player.engine);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        QVERIFY(player.settlesAt(1));
        QVERIFY(!player.engine.isPlaying());
    }

    // One that is not makes the player wait for a fifth of a second.
    void everyPictureIsTakenFromThePlayer() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        player.engine.stop();
        player.engine.load(Clips::clip("long.mp4"), false);
        QTRY_VERIFY(player.engine.isStanding());
        QCOMPARE(player.value("frame-drop-count"), "0");
        QTRY_VERIFY(!isNear(stage.at(0.5, 0.25), Qt::red));
    }

    void aFilmThatAwaitsItsSurfaceIsShownThere() {
        Player player;
        player.engine.awaitSurface(true);
        player.engine.load(Clips::clip("halves.mp4"), true);
        QVERIFY(player.engine.isPlaying());
        Stage stage(player.engine);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        QCOMPARE(player.value("current-vo"), "libmpv");
        QTRY_VERIFY(player.engine.duration() > 0);
    }

    void aFilmThatAwaitsASurfaceInVainIsOpenedAllTheSame() {
        Player player;
        player.engine.awaitSurface(true);
        player.engine.load(Clips::clip("halves.mp4"), false);
        player.engine.seek(0.5, true); // it is made up for
        QTRY_VERIFY(player.engine.duration() > 0);
        QVERIFY(player.settlesAt(0.5));
    }

    void aFilmThatIsUnloadedWhileItAwaitsItsSurfaceStaysAway() {
        Player player;
        player.engine.awaitSurface(true);
        player.engine.load(Clips::clip("halves.mp4"), true);
        player.engine.stop();
        Stage stage(player.engine);
        QTRY_VERIFY(player.engine.surfaces().isDrawn());
        QCOMPARE(player.value("path"), "");
        QVERIFY(!player.engine.isPlaying());
    }

    void nothingIsShownAfterAStopAndTheGlowStays() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), true);
        QTRY_VERIFY(!player.engine.glowFrame().isNull());
        player.engine.stop();
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::green));
        QVERIFY(!player.engine.glowFrame().isNull());
        player.engine.load(Clips::clip("halves.mp4"), false);
        QVERIFY(player.engine.glowFrame().isNull());
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
    }

    void soundShowsNothing() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        player.engine.load(Clips::clip("tone.wav"), true);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::green));
        QTRY_VERIFY(player.engine.time() > 0.2);
        QVERIFY(player.engine.glowFrame().isNull());
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
    }

    void theGlowIsASmallPictureOfTheFilmAlone() {
        Player player;
        Stage stage(player.engine, QSize(300, 300)); // with room above and below
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(!player.engine.glowFrame().isNull());
        const QImage glow = player.engine.glowFrame();
        QCOMPARE(glow.size(), QSize(96, 54));
        for (const int x : {1, 48, 94}) {
            QVERIFY(isNear(glow.pixelColor(x, 2), Qt::red));
            QVERIFY(isNear(glow.pixelColor(x, 51), Qt::blue));
        }
    }

    void fourGlowsASecondWhileItMovesAndNoneWhileItStands() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(stage.surface->counts()->glows >= 1);
        QElapsedTimer timer;
        timer.start();
        const int before = stage.surface->counts()->glows;
        QTRY_VERIFY(player.engine.time() > 2.2);
        const int taken = stage.surface->counts()->glows - before;
        QVERIFY2(taken >= 3 && taken <= timer.elapsed() / 250 + 1, QByteArray::number(taken));

        player.engine.pause();
        QTRY_COMPARE(player.value("pause"), "yes");
        // The picture it stands at comes in late, once; then all is still.
        QTest::qWait(600);
        const int glows = stage.surface->counts()->glows;
        const int frames = stage.surface->counts()->frames;
        QTest::qWait(700);
        QCOMPARE(stage.surface->counts()->glows.load(), glows);
        QCOMPARE(stage.surface->counts()->frames.load(), frames);
    }

    void theGlowFollowsASeekOfAFilmThatStands() {
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("long.mp4"), false);
        QTRY_VERIFY(!player.engine.glowFrame().isNull());
        const QImage first = player.engine.glowFrame();
        player.engine.seek(4, true);
        QTRY_VERIFY(player.engine.glowFrame() != first);
    }

    void theLastOfSeveralSurfacesShowsAndTheFirstTakesOverAgain() {
        Player player;
        Stage first(player.engine);
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(first.surface->counts()->frames > 3);
        {
            Stage second(player.engine);
            QTRY_VERIFY(second.surface->counts()->frames > 3);
            QCOMPARE(player.engine.surfaces().drawing(), second.surface.get());
            QVERIFY(isNear(first.at(0.5, 0.5), Qt::green));
            delete second.surface;
            const int frames = first.surface->counts()->frames;
            QTRY_VERIFY(first.surface->counts()->frames > frames + 3);
        }
        QVERIFY(player.engine.isPlaying());
        QCOMPARE(player.engine.surfaces().drawing(), first.surface.get());
    }

    void aSurfaceThatGoesTakesNothingButThePicture() {
        Player player;
        {
            Stage stage(player.engine);
            player.engine.load(Clips::clip("long.mp4"), true);
            QTRY_VERIFY(stage.surface->counts()->frames > 3);
        }
        const double there = player.engine.time();
        QTRY_VERIFY(player.engine.time() > there + 0.3);
        Stage again(player.engine);
        QTRY_VERIFY(again.surface->counts()->frames > 3);
        QVERIFY(player.engine.isPlaying());
    }

    void aSurfaceThatComesAtTheEndOfAFilmLeavesItThere() {
        Player player;
        player.engine.load(Clips::clip("blink.mp4"), true);
        QTRY_COMPARE(player.ends, 1);
        Stage stage(player.engine);
        QTRY_VERIFY(stage.surface->counts()->frames > 0);
        QTRY_VERIFY(player.engine.isStanding());
        QTRY_COMPARE(player.engine.time(), player.engine.duration());
        QCOMPARE(player.ends, 1);
    }

    void aSurfaceOutlivesItsPlayer() {
        auto player = std::make_unique<Player>();
        Stage stage(player->engine);
        player->engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(stage.surface->counts()->frames > 3);
        player.reset();
        QTRY_VERIFY(isNear(stage.at(0.5, 0.5), Qt::green));
        Player next;
        stage.surface->setPlayer(&next.engine);
        next.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
    }

    void theSmallWindowTakesThePictureAndGivesItBack() {
        Player player;
        QVERIFY(!player.engine.pip());
        Stage stage(player.engine);
        PictureInPicture* const pip = player.engine.pip();
        QVERIFY(pip);
        QVERIFY(!pip->isActive());
        player.engine.load(Clips::clip("long.mp4"), true);
        QTRY_VERIFY(stage.surface->counts()->frames > 3);

        pip->toggle();
        QVERIFY(pip->isActive());
        QPointer<QQuickWindow> window = pip->window();
        QVERIFY(window->flags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(window->flags().testFlag(Qt::WindowStaysOnTopHint));
        QTRY_COMPARE(window->size(), QSize(400, 225));
        QTRY_VERIFY(!isNear(window->grabWindow().pixelColor(200, 112), Qt::black)
                    || !isNear(window->grabWindow().pixelColor(20, 20), Qt::black));
        QTRY_VERIFY(isNear(stage.at(0.5, 0.5), Qt::green));
        QVERIFY(player.engine.isPlaying());
        QTest::keyClick(window, Qt::Key_Space);
        QVERIFY(!player.engine.isPlaying());
        QTest::keyClick(window, Qt::Key_Space);
        QVERIFY(player.engine.isPlaying());
        const double there = player.engine.time();
        QVERIFY(there > 0);

        pip->toggle();
        QVERIFY(!pip->isActive());
        const int frames = stage.surface->counts()->frames;
        QTRY_VERIFY(stage.surface->counts()->frames > frames + 3);
        QTRY_VERIFY(!window);
        QVERIFY(player.engine.isPlaying());
        QVERIFY(player.engine.time() >= there);
    }

    void theSmallWindowGoesByEscapeByADoubleClickAndWhenClosed_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("Escape") << 0;
        QTest::newRow("double click") << 1;
        QTest::newRow("close") << 2;
        QTest::newRow("stop") << 3;
    }
    void theSmallWindowGoesByEscapeByADoubleClickAndWhenClosed() {
        QFETCH(int, way);
        Player player;
        Stage stage(player.engine);
        player.engine.load(Clips::clip("halves.mp4"), false);
        QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
        PictureInPicture* const pip = player.engine.pip();
        pip->start();
        QPointer<QQuickWindow> window = pip->window();
        QVERIFY(QTest::qWaitForWindowExposed(window, lumbra::patience));
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(200, 50), Qt::red));
        switch (way) {
        case 0:
            QTest::keyClick(window, Qt::Key_Escape);
            break;
        case 1:
            QTest::mouseDClick(window, Qt::LeftButton, {}, QPoint(60, 60));
            break;
        case 2:
            window->close();
            break;
        default:
            player.engine.stop();
        }
        QVERIFY(!pip->isActive());
        QTRY_VERIFY(!window);
        if (way < 3)
            QTRY_VERIFY(isNear(stage.at(0.5, 0.25), Qt::red));
    }

    void theSmallWindowGoesWithItsPlayer() {
        auto player = std::make_unique<Player>();
        Stage stage(player->engine);
        player->engine.load(Clips::clip("halves.mp4"), false);
        player->engine.pip()->start();
        QPointer<QQuickWindow> window = player->engine.pip()->window();
        QVERIFY(QTest::qWaitForWindowExposed(window, lumbra::patience));
        player.reset();
        QTRY_VERIFY(!window);
    }
};

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    tst_VideoSurface test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_videosurface.moc"
