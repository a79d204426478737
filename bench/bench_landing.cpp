// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_landing LIBRARY TIMES: how long after a file is there the running library holds it, each after a quiet time and
// in a burst of many; and how long a large folder that is moved in, and out again, keeps the main thread.
#include "MainThread.h"
#include "library/Library.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace lumbra;

namespace {

constexpr int quiet = 700; // ms, longer than two batches of a burst are apart
constexpr int filesOfFolder = 100'000;
constexpr int filesOfBurst = 200;
constexpr int burstPause = 10; // ms between two of them

void pause(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// Runs the event loop until the condition holds, asked whenever the index or the walk's end is told.
void wait(Library& library, const std::function<bool()>& condition) {
    QEventLoop loop;
    const auto look = [&] {
        if (condition())
            loop.quit();
    };
    QObject::connect(&library, &Library::indexChanged, &loop, look);
    QObject::connect(&library, &Library::indexingChanged, &loop, look);
    QTimer::singleShot(60'000, &loop, [] {
        std::fprintf(stderr, "bench_landing: nothing came in a minute\n");
        std::exit(1);
    });
    if (!condition())
        loop.exec();
}

void make(const Location& file) {
    const int made = ::open(file.path().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    if (made < 0 || ::write(made, "x", 1) != 1) {
        std::perror("bench_landing");
        std::exit(1);
    }
    ::close(made);
}

// Yields the milliseconds that the slowest file of a burst takes.
double burst(Library& library, const Location& folder) {
    struct Landed {
        Location file;
        bench::Clock::time_point made;
    };
    std::vector<Landed> waiting;
    double slowest = 0;
    QObject context;
    QObject::connect(&library, &Library::indexChanged, &context, [&] {
        std::erase_if(waiting, [&](const Landed& each) {
            const bool isThere = library.index().contains(each.file);
            if (isThere)
                slowest = std::max(slowest, bench::millisecondsSince(each.made));
            return isThere;
        });
    });
    std::vector<Location> all;
    for (int i = 0; i < filesOfBurst; ++i) {
        all.push_back(folder.child("landing-burst-" + std::to_string(i) + ".png"));
        waiting.push_back({all.back(), bench::Clock::now()});
        make(all.back());
        pause(burstPause);
    }
    wait(library, [&] { return waiting.empty(); });
    for (const Location& file : all)
        ::unlink(file.path().constData());
    wait(library, [&] { return !library.index().contains(all.back()); });
    pause(quiet);
    return slowest;
}

// Yields the milliseconds of the longest task on the main thread.
double moveFolder(bench::Application& application, Library& library, const Location& project) {
    namespace fs = std::filesystem;
    const fs::path aside = fs::path(library.root().view()).concat("-landing");
    const Location moved = project.child("landing-folder");
    fs::remove_all(aside);
    fs::remove_all(moved.view());
    fs::create_directory(aside);
    for (int i = 0; i < filesOfFolder; ++i)
        std::ofstream(aside / (std::to_string(i) + ".png"));
    pause(quiet);
    application.longest = 0;
    const Location last = moved.child(std::to_string(filesOfFolder - 1) + ".png");
    for (const bool comes : {true, false}) {
        fs::rename(comes ? aside : fs::path(moved.view()), comes ? fs::path(moved.view()) : aside);
        wait(library, [&] { return library.index().contains(last) == comes; });
        pause(quiet);
    }
    fs::remove_all(aside);
    return application.longest;
}

} // namespace

int main(int count, char** arguments) {
    bench::Application application(count, arguments);
    if (count != 3) {
        std::fprintf(stderr, "usage: bench_landing LIBRARY TIMES\n");
        return 2;
    }
    const Location root = Location(QByteArray(arguments[1])).canonical();
    Library library(root, true);
    wait(library, [&] { return !library.indexing(); });
    const AssetIndex index = library.index();
    const Location folder{QByteArray((*index.folders().begin())->path().c_str())};

    // The first files also show that the watches are set.
    const auto land = [&](const QByteArray& name) {
        const Location file = folder.child(std::string_view(name.constData(), size_t(name.size())));
        const auto start = bench::Clock::now();
        make(file);
        wait(library, [&] { return library.index().contains(file); });
        const double taken = bench::millisecondsSince(start);
        pause(quiet);
        ::unlink(file.path().constData());
        wait(library, [&] { return !library.index().contains(file); });
        pause(quiet);
        return taken;
    };
    land("landing-first.png");
    std::vector<double> taken;
    for (int i = 0; i < std::atoi(arguments[2]); ++i)
        taken.push_back(land("landing-" + QByteArray::number(i) + ".png"));
    bench::report("landing", bench::median(taken));
    bench::report("landing_worst", *std::ranges::max_element(taken));
    bench::report("landing_burst", burst(library, folder));
    bench::report("landing_folder", moveFolder(application, library, folder.parent()));
}
