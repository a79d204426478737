// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_make TARGET FILES FOLDERS: makes a library of tiny files, of which one in a hundred is starred and one in fifty
// is no media file. The same names and sizes each time; dates go back forty days from now.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int projects = 20;
constexpr int foldersInBatch = 25;
constexpr double days = 86400;

// Spreads numbers evenly and without order; a finaliser after Steele's splitmix.
unsigned long long scattered(unsigned long long n) {
    n += 0x9e3779b97f4a7c15;
    n = (n ^ (n >> 30)) * 0xbf58476d1ce4e5b9;
    n = (n ^ (n >> 27)) * 0x94d049bb133111eb;
    return n ^ (n >> 31);
}

std::string folderName(const std::string& root, long number) {
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "/project-%02ld/batch-%04ld/renders-%05ld", number % projects,
                  number / projects / foldersInBatch, number);
    return root + text.data();
}

std::string fileName(long number) {
    static constexpr std::array endings{".png", ".png", ".png", ".jpg", ".jpg", ".webp", ".mp4", ".wav", ".md"};
    static constexpr std::array stems{"frame", "hero-final", "shot", "thumbnail-large", "voice", "storyboard-v3"};
    const auto chance = scattered(static_cast<unsigned long long>(number));
    const char* ending = number % 50 == 49 ? ".lock" : endings[chance % endings.size()];
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s_%06ld%s", stems[(chance >> 8) % stems.size()], number, ending);
    return text.data();
}

void makeFile(int folder, long number, double now) {
    const int file = ::openat(folder, fileName(number).c_str(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0) {
        std::perror("bench_make");
        std::exit(1);
    }
    const auto chance = scattered(static_cast<unsigned long long>(number) + 1);
    if (::ftruncate(file, static_cast<long>(chance % 4096)) != 0)
        std::perror("bench_make");
    const double modified = now - double(chance % 4'000'000) / 4'000'000 * 40 * days;
    if (number % 100 == 7) {
        std::array<char, 32> date{};
        const int length = std::snprintf(date.data(), date.size(), "%.3f", modified + 60);
        ::fsetxattr(file, "user.com.lumbra.starred", date.data(), static_cast<size_t>(length), 0);
    }
    const timespec time{static_cast<time_t>(modified), 0};
    const timespec times[2] = {time, time};
    ::futimens(file, times);
    ::close(file);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::fprintf(stderr, "usage: bench_make TARGET FILES FOLDERS\n");
        return 2;
    }
    const std::string root = arguments[1];
    const long files = std::atol(arguments[2]);
    const long folders = std::atol(arguments[3]);
    const double now = double(std::time(nullptr));

    std::atomic<long> next = 0;
    const auto work = [&] {
        for (long number = next++; number < folders; number = next++) {
            const std::string path = folderName(root, number);
            std::filesystem::create_directories(path);
            const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            for (long file = number; file < files; file += folders)
                makeFile(folder, file, now);
            ::close(folder);
        }
    };
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i)
        workers.emplace_back(work);
}
