// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_walk LIBRARY ROUNDS: the first walk of a library into an index, beside the floor and beside fd.
//
// fd is asked for all files changed after 1970, which makes it look at each file's facts itself, with as many threads
// and without another program; it reads no stars.
#include "FloorWalk.h"
#include "Measure.h"
#include "library/Scanner.h"

#include <cstdlib>

using namespace lumbra;

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: bench_walk LIBRARY ROUNDS\n");
        return 2;
    }
    constexpr int workers = 2;
    const std::string root = arguments[1];
    const std::string fd =
        "fdfind -u -t f -j " + std::to_string(workers) + " --changed-after 1970-01-01 . '" + root + "' >/dev/null";

    bench::FloorWalk::Sum floor;
    qsizetype indexed = 0;
    bool fdRan = true;
    std::vector<bench::Run> runs{
        {"walk", [&] { indexed = Scanner::index({Location(QByteArray(root.c_str()))}, workers).count(); }},
        {"walk_floor", [&] { floor = bench::FloorWalk::run(root, workers); }},
        {"walk_fd", [&] { fdRan = std::system(fd.c_str()) == 0 && fdRan; }},
    };
    bench::interleave(runs, std::atoi(arguments[2]));
    if (indexed != floor.files || !fdRan) {
        std::fprintf(stderr, "bench_walk: the walks disagree: %lld files and %ld\n", static_cast<long long>(indexed),
                     floor.files);
        return 1;
    }
    for (const bench::Run& run : runs)
        bench::report(run.name, bench::median(run.milliseconds));
    bench::report("walk_files", double(indexed));
    bench::report("walk_stars", double(floor.stars));
}
