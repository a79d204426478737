// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_page LIBRARY: a folder of 100,000 pictures on screen, of a library of 200,000 files that bench_make has begun.
// What a frame costs the main thread, its own work and what it waits for while the scene graph takes the changes over,
// the slowest of a hundred: scrolling and jumping about; the slowest step of the slider of the tiles' size from one end
// to the other, at the top and in the middle of the folder, each step the least of some rounds; then
// the longest task from a file that lands, a letter that is typed, and all being selected; and the tiles that a landing
// makes anew.
#include "MainThread.h"
#include "browsing/browser/Browser.h"
#include "look/Look.h"

#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <random>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

using namespace lumbra;
using bench::wait;

namespace {

constexpr int openFiles = 100'000;
constexpr int pictures = 100; // that the open folder's files are links to
constexpr int frames = 300;
constexpr double wheel = 120; // points a frame: a fast turn
constexpr double smallest = 100;
constexpr double largest = 360;
constexpr double sliderStep = 4;
constexpr int zoomRounds = 3;

double processorTime() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// Notes the longest processor time that one event takes of the main thread.
class Application : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;
    double longest = 0; // ms
    int depth = 0;

    bool notify(QObject* receiver, QEvent* event) override {
        if (depth > 0)
            return QGuiApplication::notify(receiver, event);
        ++depth;
        const double start = processorTime();
        const bool handled = QGuiApplication::notify(receiver, event);
        longest = std::max(longest, processorTime() - start);
        --depth;
        return handled;
    }
};

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "bench_page: %s\n", message);
    std::exit(1);
}

void makeFolder(const QString& folder) {
    QDir().mkpath(folder);
    if (QDir(folder).count() >= openFiles)
        return;
    const QString originals = folder + QStringLiteral("/.originals");
    QDir().mkpath(originals);
    for (int n = 0; n < pictures; ++n) {
        QImage image(320, 240, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb((x * n) % 256, (y + 2 * n) % 256, (x + y) % 256));
        const QString original = originals + QStringLiteral("/%1.png").arg(n);
        image.save(original);
        for (int copy = n; copy < openFiles; copy += pictures)
            if (::link(qPrintable(original),
                       qPrintable(folder + QStringLiteral("/frame_%1.png").arg(copy, 6, 10, QLatin1Char('0'))))
                    != 0
                && errno != EEXIST)
                fail("the folder can't be made");
    }
}

QQuickItem* find(QQuickItem* below, const char* type) {
    for (QQuickItem* item : below->childItems()) {
        if (item->isVisible() && (item->inherits(type) || QByteArray(item->metaObject()->className()).startsWith(type)))
            return item;
        if (QQuickItem* found = find(item, type))
            return found;
    }
    return nullptr;
}

QSet<QObject*> tiles(QQuickItem* below) {
    QSet<QObject*> found;
    for (QQuickItem* item : below->childItems()) {
        if (QByteArray(item->metaObject()->className()).startsWith("AssetTile"))
            found.insert(item);
        found += tiles(item);
    }
    return found;
}

// What frames cost the main thread.
class Frames {
public:
    explicit Frames(QQuickWindow* window) : m_window(window) {
        QObject::connect(
            window, &QQuickWindow::beforeSynchronizing, window, [this] { m_start = bench::Clock::now(); },
            Qt::DirectConnection);
        QObject::connect(
            window, &QQuickWindow::afterSynchronizing, window,
            [this] { m_synchronizing = bench::millisecondsSince(m_start); }, Qt::DirectConnection);
    }

    // Draws one frame after the change; answers its cost in milliseconds.
    double draw(const std::function<void()>& change) {
        QEventLoop loop;
        QObject::connect(m_window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        QTimer::singleShot(10'000, &loop, [] { fail("no frame is drawn"); });
        m_synchronizing = 0;
        const double start = processorTime();
        change();
        m_window->update();
        loop.exec();
        return processorTime() - start + m_synchronizing;
    }

private:
    QQuickWindow* m_window;
    bench::Clock::time_point m_start;
    std::atomic<double> m_synchronizing = 0;
};

double slowestOfAHundred(std::vector<double> costs) {
    std::ranges::sort(costs);
    return costs[costs.size() * 99 / 100];
}

} // namespace

int main(int count, char** arguments) {
    Application application(count, arguments);
    if (count != 2)
        fail("usage: bench_page LIBRARY");
    Look::prepareApplication();
    const QString folder = QString::fromLocal8Bit(arguments[1]) + QStringLiteral("/project-00/open");
    makeFolder(folder);
    const Location open = Location(folder.toUtf8()).canonical();
    const QTemporaryDir home;
    Preferences preferences(Location(home.filePath(QStringLiteral("settings.ini")).toUtf8()));
    Library library(Location(QByteArray(arguments[1])).canonical(), true);
    library.setPlace(Place::folder(open));
    Browser browser(&library, nullptr, preferences);
    QQmlEngine engine;
    Look::prepareEngine(engine);
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport QtQuick.Controls.Basic\nimport Lumbra.Browsing\n"
                      "ApplicationWindow { property Browser browser\n"
                      "  BrowserView { anchors.fill: parent; browser: parent.Window.window.browser } }",
                      QUrl(QStringLiteral("qrc:/bench.qml")));
    const std::unique_ptr<QObject> root(
        component.createWithInitialProperties({{QStringLiteral("browser"), QVariant::fromValue(&browser)}}));
    auto* const window = qobject_cast<QQuickWindow*>(root.get());
    if (!window)
        fail(qPrintable(component.errorString()));
    engine.setIncubationController(window->incubationController()); // as in the program
    window->resize(1440, 900);
    window->show();
    wait([&] { return !library.indexing() && browser.loaded() && browser.order().size() >= openFiles; },
         "the folder does not load");
    QQuickItem* const list = find(window->contentItem(), "QQuickListView");
    if (!list)
        fail("there is no list");
    Frames drawn(window);
    const auto settle = [&] {
        for (int i = 0; i < 30; ++i)
            drawn.draw([] {});
    };
    const auto scrollTo = [&](double y) { list->setProperty("contentY", y); };
    const double top = list->property("contentY").toDouble();
    settle();

    std::vector<double> scrolling;
    for (int i = 0; i < frames; ++i)
        scrolling.push_back(drawn.draw([&] { scrollTo(top + i * wheel); }));

    std::mt19937 random(1);
    std::vector<double> jumping;
    for (int i = 0; i < frames / 2; ++i) {
        const double whole = list->property("contentHeight").toDouble() - list->height();
        jumping.push_back(drawn.draw([&] { scrollTo(top + whole * double(random() % 1000) / 1000); }));
    }
    scrollTo(top);
    settle();

    std::vector<double> zooming;
    for (const double part : {0.0, 0.5}) {
        browser.settings()->setZoom(smallest);
        scrollTo(top + part * (list->property("contentHeight").toDouble() - list->height()));
        settle();
        std::vector<double> least;
        for (int round = 0; round < zoomRounds; ++round) {
            size_t step = 0;
            const auto draw = [&](double zoom) {
                const double cost = drawn.draw([&] { browser.settings()->setZoom(zoom); });
                if (round == 0)
                    least.push_back(cost);
                least[step] = std::min(least[step], cost);
                ++step;
            };
            for (double zoom = smallest; zoom <= largest; zoom += sliderStep)
                draw(zoom);
            for (double zoom = largest; zoom >= smallest; zoom -= sliderStep)
                draw(zoom);
        }
        zooming.insert(zooming.end(), least.begin(), least.end());
    }
    browser.settings()->setZoom(170);
    scrollTo(top);
    settle();

    const auto longestUntil = [&](const std::function<void()>& work, const std::function<bool()>& done) {
        application.longest = 0;
        QTimer::singleShot(0, &application, work);
        wait(done, "nothing came of it");
        drawn.draw([] {});
        return application.longest;
    };
    std::vector<double> landing;
    std::vector<double> made;
    for (int i = 0; i < 9; ++i) {
        const QSet<QObject*> before = tiles(window->contentItem());
        const qsizetype files = browser.order().size();
        const QString landed = folder + QStringLiteral("/zz_landed_%1.png").arg(i);
        landing.push_back(longestUntil([&] { QFile::copy(folder + QStringLiteral("/.originals/1.png"), landed); },
                                       [&] { return browser.order().size() == files + 1; }));
        settle();
        made.push_back(double((tiles(window->contentItem()) - before).size()));
    }

    std::vector<double> typing;
    std::vector<double> found;
    for (int i = 0; i < 9; ++i) {
        const QString search = QStringLiteral("frame_0%1").arg(i);
        const auto start = bench::Clock::now();
        typing.push_back(
            longestUntil([&] { browser.setSearch(search); }, [&] { return browser.order().size() <= openFiles / 10; }));
        found.push_back(bench::millisecondsSince(start));
        browser.setSearch({});
        wait([&] { return browser.order().size() > openFiles; }, "the page does not come back");
    }

    std::vector<double> selecting;
    for (int i = 0; i < 5; ++i) {
        selecting.push_back(
            longestUntil([&] { browser.selectAll(); }, [&] { return browser.selectedCount() > openFiles; }));
        browser.clickBackground();
        settle();
    }
    for (int i = 0; i < 9; ++i)
        QFile::remove(folder + QStringLiteral("/zz_landed_%1.png").arg(i));

    bench::report("page_scroll", slowestOfAHundred(scrolling));
    bench::report("page_scroll_median", bench::median(scrolling));
    bench::report("page_jump", slowestOfAHundred(jumping));
    bench::report("page_zoom", *std::ranges::max_element(zooming));
    bench::report("page_zoom_median", bench::median(zooming));
    bench::report("page_landing", bench::median(landing));
    bench::report("page_landing_tiles", *std::ranges::max_element(made));
    bench::report("page_typing", bench::median(typing));
    bench::report("page_typing_found", bench::median(found));
    bench::report("page_select_all", bench::median(selecting));
}
