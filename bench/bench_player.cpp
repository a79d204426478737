// The player at 1080p, without a sound device: from a load to the first picture, a seek to the seek's picture, pictures
// dropped while it plays beside mpv itself drawing nowhere, and the processor's time while it stands. Needs a display.
//
// bench_player FOLDER: makes its clip there once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "media/player/MpvLibrary.h"
#include "media/player/PlayerEngine.h"
#include "media/player/VideoSurface.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QTest>
#include <QTimer>

#include <ctime>
#include <filesystem>

using namespace lumbra;

namespace {

constexpr int rounds = 9;
constexpr double playFor = 8; // seconds

void make(const QString& file) {
    if (QFile::exists(file))
        return;
    std::filesystem::create_directories(std::filesystem::path(file.toStdString()).parent_path());
    const QString part = file + QStringLiteral(".part.mp4");
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  QStringLiteral("-v error -y -f lavfi -i testsrc2=s=1920x1080:r=30:d=20 -f lavfi -i sine=d=20 -c:v "
                                 "libx264 -preset veryfast -pix_fmt yuv420p -g 60 -c:a aac -shortest")
                          .split(QLatin1Char(' '))
                      << part);
    if (!process.waitForFinished(300'000) || process.exitCode() != 0 || !QFile::rename(part, file))
        qFatal("ffmpeg: %s", process.readAllStandardError().constData());
}

// Looks so often, in milliseconds; in between the main thread sleeps unless there is something to do, as it would in
// the application: one that is kept busy takes a processor from the player.
void waitFor(const std::function<bool()>& done, int interval = 1) {
    QTimer alarm;
    alarm.setTimerType(Qt::PreciseTimer);
    alarm.start(interval);
    const auto start = bench::Clock::now();
    while (!done()) {
        if (bench::millisecondsSince(start) > 30'000)
            qFatal("the player does not get there");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

constexpr int seldom = 50; // ms

QByteArray ask(mpv_handle* mpv, const char* property) {
    char* const text = MpvLibrary::shared()->get_property_string(mpv, property);
    const QByteArray copied(text);
    MpvLibrary::shared()->free(text);
    return copied;
}

double dropped(mpv_handle* mpv) {
    return ask(mpv, "frame-drop-count").toDouble() + ask(mpv, "decoder-frame-drop-count").toDouble();
}

double processorTime() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1000 + double(time.tv_nsec) / 1e6;
}

// As `mpv --vo=null` plays it.
double droppedByMpv(const QByteArray& file) {
    const MpvLibrary& library = *MpvLibrary::shared();
    mpv_handle* const mpv = library.create();
    for (const auto& [name, value] :
         {std::pair("vo", "null"), {"ao", "null"}, {"config", "no"}, {"load-scripts", "no"}, {"hwdec", "auto-safe"}})
        library.set_option_string(mpv, name, value);
    library.initialize(mpv);
    const char* load[] = {"loadfile", file.constData(), nullptr};
    library.command_async(mpv, 0, load);
    waitFor([mpv] { return ask(mpv, "time-pos").toDouble() > playFor; }, seldom);
    const double count = dropped(mpv);
    library.terminate_destroy(mpv);
    return count;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        qFatal("usage: bench_player FOLDER");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    const Location file = Location(argv[1]).canonical().child("film1080p.mp4");
    make(file.toString());

    Preferences preferences(Location(argv[1]).child("settings.ini"));
    const auto began = bench::Clock::now();
    PlayerEngine engine(preferences, {{"ao", "null"}});
    bench::report("player_create", bench::millisecondsSince(began));
    QQuickWindow window;
    window.resize(1280, 720);
    auto* const surface = new VideoSurface(window.contentItem());
    surface->setSize(window.size());
    surface->setPlayer(&engine);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window does not show");

    // A picture is there when it has been drawn and its glow taken, which is asked for of new pictures alone.
    const auto pictureAfter = [&](const std::function<void()>& work) {
        const int frames = surface->counts()->frames;
        const auto start = bench::Clock::now();
        work();
        waitFor([&] { return surface->counts()->frames > frames && engine.isStanding(); });
        return bench::millisecondsSince(start);
    };
    std::vector<double> loads, exact, cheap;
    for (int round = 0; round < rounds; ++round) {
        loads.push_back(pictureAfter([&] { engine.load(file, false); }));
        waitFor([&] { return engine.duration() > 0; });
        exact.push_back(pictureAfter([&] { engine.seek(3.5 + round, true); }));
        cheap.push_back(pictureAfter([&] { engine.seek(2.6 + round, false); }));
        engine.stop();
    }
    bench::report("player_load", bench::median(loads));
    bench::report("player_seek_exact", bench::median(exact));
    bench::report("player_seek_cheap", bench::median(cheap));

    engine.load(file, true);
    waitFor([&] { return engine.time() > playFor; }, seldom);
    bench::report("player_dropped", dropped(engine.mpv()->raw()));
    engine.pause();
    bench::report("player_dropped_mpv", droppedByMpv(file.path()));

    const auto settle = bench::Clock::now();
    waitFor([&] { return bench::millisecondsSince(settle) > 1000; });
    const double before = processorTime();
    QTest::qSleep(3000); // nothing of the main thread's own
    bench::report("player_paused", (processorTime() - before) / 3000 * 100);
}
