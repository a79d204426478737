// The screening room in a window of its own: from the wish to see a 1080p film to its first picture, from an arrow to
// the next picture of 24 megapixels, the longest work of the main thread at a time while a film runs, and what the glow
// costs. Needs a display.
//
// bench_room FOLDER: makes its library there once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "look/Look.h"
#include "media/player/VideoSurface.h"
#include "media/room/Glow.h"
#include "media/room/RoomDoor.h"
#include "media/room/StagePicture.h"

#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

#include <clocale>
#include <ctime>
#include <filesystem>
#include <mutex>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

constexpr int rounds = 7;
constexpr double fromClickToKey = 400; // milliseconds
constexpr int pictures = 5;
constexpr QSize pictureSize(6000, 4000);
constexpr double playFor = 8; // seconds

// What the calling thread has worked so far, milliseconds: to wait for whoever draws is no work of its own.
double worked() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1000 + double(time.tv_nsec) / 1e6;
}

// Notes the longest time that the main thread works on one event.
class Application : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;
    double longest = 0; // ms

    bool notify(QObject* receiver, QEvent* event) override {
        const double start = worked();
        const bool handled = QGuiApplication::notify(receiver, event);
        longest = std::max(longest, worked() - start);
        return handled;
    }
};

void waitFor(const char* what, const std::function<bool()>& done) {
    const auto start = bench::Clock::now();
    QTimer look; // to wait in, so that the player has both processors to itself
    look.start(1);
    while (!done()) {
        if (bench::millisecondsSince(start) > 60'000)
            qFatal("waited in vain: %s", what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void makeFilm(const QString& file) {
    if (QFile::exists(file))
        return;
    const QString part = file + QStringLiteral(".part.mp4");
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  QStringLiteral("-v error -y -f lavfi -i testsrc2=s=1920x1080:r=30:d=20 -f lavfi -i sine=d=20 -c:v "
                                 "libx264 -preset veryfast -pix_fmt yuv420p -g 60 -c:a aac -shortest")
                          .split(u' ')
                      << part);
    if (!process.waitForFinished(300'000) || process.exitCode() != 0 || !QFile::rename(part, file))
        qFatal("ffmpeg: %s", process.readAllStandardError().constData());
}

// Smooth with a little noise, as renders are: each compresses like a photograph.
void makePicture(const QString& file, quint32 seed) {
    if (QFile::exists(file))
        return;
    QRandomGenerator random(seed);
    QImage image(pictureSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = int(random.generate() & 7);
            line[x] = qRgb((x >> 5 & 0xff) | noise, (y >> 4 & 0xff) | noise, int((x + y) >> 6 & 0xff) ^ int(seed * 40));
        }
    }
    if (!image.save(file, "JPG", 90))
        qFatal("cannot write a picture");
}

// A room in a window, as the application shows it.
class Shown {
public:
    explicit Shown(Library& library, const RoomOptions& options) : m_door(&library, options) {
        Look::prepareEngine(m_engine);
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport Lumbra.Media\nItem { id: root; required property RoomDoor door\n"
                          "RoomRehearsal { anchors.fill: parent; door: root.door }\n"
                          "Loader { anchors.fill: parent; active: root.door.room !== null\n"
                          "sourceComponent: ScreeningRoomView { room: root.door.room; onFaded: root.door.faded() } } }",
                          QUrl(QStringLiteral("qrc:/bench.qml")));
        m_root.reset(qobject_cast<QQuickItem*>(
            component.createWithInitialProperties({{QStringLiteral("door"), QVariant::fromValue(&m_door)}})));
        if (!m_root)
            qFatal("%s", qPrintable(component.errorString()));
        m_window.resize(1440, 900);
        m_root->setSize(m_window.size());
        m_root->setParentItem(m_window.contentItem());
        QObject::connect(
            &m_window, &QQuickWindow::frameSwapped, &m_window, [this] { swapped(); }, Qt::DirectConnection);
        m_window.show();
        m_window.requestActivate();
        if (!QTest::qWaitForWindowActive(&m_window))
            qFatal("the window does not become active");
    }

    RoomDoor& door() { return m_door; }
    ScreeningRoom& room() { return *m_door.room(); }

    template <typename Item>
    Item* find() {
        return m_root->findChild<Item*>();
    }

    // A frame that began after this call is on the screen.
    void waitForFrame() {
        const int frames = m_frames;
        m_window.update();
        waitFor("a frame", [&] { return m_frames > frames; });
    }

    // Notes when the surface's first picture is on the screen.
    void watch(const VideoSurface& surface) {
        const std::lock_guard lock(m_mutex);
        m_counts = surface.counts();
        m_seen.reset();
    }
    std::optional<bench::Clock::time_point> seen() {
        const std::lock_guard lock(m_mutex);
        return m_seen;
    }

private:
    // On the thread that draws.
    void swapped() {
        ++m_frames;
        const std::lock_guard lock(m_mutex);
        if (m_counts && m_counts->frames > 0 && !m_seen)
            m_seen = bench::Clock::now();
    }

    QQmlEngine m_engine;
    RoomDoor m_door;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
    std::atomic<int> m_frames = 0;
    std::mutex m_mutex;
    std::shared_ptr<VideoSurface::Counts> m_counts;
    std::optional<bench::Clock::time_point> m_seen;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        qFatal("usage: bench_room FOLDER");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    // As on a machine with a graphics processor: what draws in software would count as the main thread's.
    qputenv("QSG_RENDER_LOOP", "threaded");
    Application application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const Location folder = Location(argv[1]).canonical();
    const Location root = folder.child("library");
    std::filesystem::create_directories(root.child("Bench").path().toStdString());
    const Location film = root.child("Bench/film.mp4");
    makeFilm(film.toString());
    QList<Location> stills;
    for (int i = 0; i < pictures; ++i) {
        stills.append(root.child(QStringLiteral("Bench/still-%1.jpg").arg(i)));
        makePicture(stills.last().toString(), quint32(i + 1));
    }

    Library library(root, true);
    waitFor("the library", [&] { return !library.indexing(); });
    Preferences preferences(folder.child("settings.ini"));
    RoomOptions options;
    options.preferences = &preferences;
    options.player = {{"ao", "null"}};
    Shown shown(library, options);
    const auto play = [&](const Location& file) {
        Assets order{*library.index().find(film)};
        for (const Location& still : stills)
            order.append(*library.index().find(still));
        library.setPlaying(PlayRequest{*library.index().find(file), order});
    };
    const auto close = [&] {
        library.setPlaying(std::nullopt);
        waitFor("the room to fade", [&] { return shown.door().room() == nullptr; });
    };

    std::vector<double> opened;
    for (int round = 0; round <= rounds; ++round) {
        // Whoever presses the key has selected the film.
        shown.door().expect(*library.index().find(film));
        const auto selected = bench::Clock::now();
        waitFor("the hand", [&] { return bench::millisecondsSince(selected) > fromClickToKey; });
        const auto start = bench::Clock::now();
        play(film);
        waitFor("the film's view", [&] { return shown.find<VideoSurface>() != nullptr; });
        shown.watch(*shown.find<VideoSurface>());
        waitFor("the film's picture", [&] { return shown.seen().has_value(); });
        const std::chrono::duration<double, std::milli> taken = *shown.seen() - start;
        if (round == 0)
            bench::report("room_first", taken.count());
        else
            opened.push_back(taken.count());
        close();
    }
    bench::report("room_film", bench::median(opened));

    std::vector<double> ahead, cold;
    for (int round = 0; round < rounds; ++round) {
        play(stills.at(1));
        const auto sharp = [&] {
            const auto* const picture = shown.find<StagePicture>();
            return picture && !picture->image().isNull() && picture->image() == shown.room().stillImage();
        };
        const auto start = bench::Clock::now();
        waitFor("the first picture", sharp);
        shown.waitForFrame();
        cold.push_back(bench::millisecondsSince(start));
        waitFor("the neighbours", [&] { return shown.room().stillsHeld() == 3; });
        const auto pressed = bench::Clock::now();
        shown.room().go(1);
        waitFor("the next picture", sharp);
        shown.waitForFrame();
        ahead.push_back(bench::millisecondsSince(pressed));
        close();
    }
    bench::report("room_still", bench::median(cold));
    bench::report("room_arrow", bench::median(ahead));

    play(film);
    waitFor("the film to run", [&] { return shown.room().engine()->time() > 1; });
    application.longest = 0;
    waitFor("the film to run", [&] { return shown.room().engine()->time() > 1 + playFor; });
    bench::report("room_main_thread", application.longest);
    const QImage frame = shown.room().engine()->glowFrame();
    close();

    std::vector<double> glows;
    for (int round = 0; round < 50; ++round) {
        const auto start = bench::Clock::now();
        const QImage canvas = Glow::ofPicture(frame);
        Glow::between(canvas, canvas, 0.5);
        glows.push_back(bench::millisecondsSince(start));
    }
    constexpr double perSecond = 4;
    bench::report("room_glow", bench::median(glows) * perSecond / 1000 * 100);
}
