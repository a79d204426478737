// Measures copies into another file system against `cp -a` followed by `sync`: ten thousand small files, each a
// transfer of its own, and one of 4 GB; from the disk into memory, where nothing but the work itself costs, and from
// memory to the disk.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "platform/Files.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

constexpr int smallFiles = 10'000;
constexpr size_t smallSize = 4'000;
constexpr size_t largeSize = size_t(4) << 30;

Location location(const fs::path& path) {
    return Location(QByteArray::fromStdString(path.native()));
}

void makeSmallFiles(const fs::path& folder) {
    fs::create_directories(folder);
    const std::string bytes(smallSize, 'x');
    for (int i = 0; i < smallFiles; ++i) {
        const fs::path file = folder / ("file " + std::to_string(i) + ".png");
        std::ofstream(file) << bytes;
        if (i % 10 == 0)
            ::setxattr(file.c_str(), "user.com.lumbra.starred", "1", 1, 0);
    }
}

void makeLargeFile(const fs::path& folder) {
    fs::create_directories(folder);
    std::ofstream file(folder / "large.mp4", std::ios::binary);
    std::string bytes(1 << 20, 'x');
    for (size_t written = 0; written < largeSize; written += bytes.size()) {
        bytes[0] = char(written >> 20);
        file.write(bytes.data(), std::streamsize(bytes.size()));
    }
}

void ours(const fs::path& from, const fs::path& to, const fs::path& journal) {
    QList<Files::Transfer> transfers;
    for (const auto& entry : fs::directory_iterator(from))
        transfers.append({location(entry.path()), location(to / entry.path().filename()), Files::Transfer::Kind::copy});
    for (const Files::Arrival& arrival : Files::carryOut(transfers, location(journal))) {
        if (!arrival.target) {
            std::fprintf(stderr, "%s\n", qPrintable(arrival.error.value_or(Files::Error()).description));
            std::exit(1);
        }
    }
}

void peer(const fs::path& from, const fs::path& to) {
    const std::string command = "cp -a '" + from.native() + "/.' '" + to.native() + "' && sync";
    if (std::system(command.c_str()) != 0)
        std::exit(1);
}

// In turn, each into an empty folder while nothing waits to be written.
void measure(const std::string& name, const fs::path& from, const fs::path& to, const fs::path& journal, int rounds) {
    std::vector<double> taken[2];
    for (int round = 0; round <= rounds; ++round) {
        for (const int which : {0, 1}) {
            fs::remove_all(to);
            fs::create_directories(to);
            ::sync();
            const auto start = bench::Clock::now();
            if (which == 0)
                ours(from, to, journal);
            else
                peer(from, to);
            if (round > 0) // the first only warms up
                taken[which].push_back(bench::millisecondsSince(start));
        }
    }
    fs::remove_all(to);
    bench::report((name + "_ours").c_str(), bench::median(taken[0]));
    bench::report((name + "_cp").c_str(), bench::median(taken[1]));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: bench_bring FOLDER FOLDER-IN-MEMORY ROUNDS\n");
        return 2;
    }
    const fs::path disk = fs::path(argv[1]) / "bring";
    const fs::path memory = fs::path(argv[2]) / "lumbra-bench-bring";
    const int rounds = std::atoi(argv[3]);
    const fs::path journal = disk / "journal";
    for (const fs::path& folder : {disk, memory})
        fs::remove_all(folder);

    makeSmallFiles(disk / "small");
    measure("small_to_memory", disk / "small", memory / "to", journal, rounds);
    makeSmallFiles(memory / "small");
    measure("small_to_disk", memory / "small", disk / "to", journal, rounds);

    makeLargeFile(disk / "large");
    measure("large_to_memory", disk / "large", memory / "to", journal, rounds);
    fs::remove_all(disk / "large");
    makeLargeFile(memory / "large");
    measure("large_to_disk", memory / "large", disk / "to", journal, rounds);

    for (const fs::path& folder : {disk, memory})
        fs::remove_all(folder);
}
