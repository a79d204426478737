// What a program shows and when, judged by nothing but the pixels of its display, so that it can be any program. Needs
// a display with nothing else on it.
//
// bench_screen STILL PROGRAM [ARGUMENT...]: starts the program and tells the milliseconds to its first frame, which is
// anything but one plain colour, and to the last change before the picture stood for STILL milliseconds.
// The lowest line of the display is not looked at: some tell there how far they are with what is out of sight.
//
// bench_screen --landing MAGENTA GREEN FOLDER TIMES STILL PROGRAM [ARGUMENT...]: then puts these two plain pictures
// into the folder that the program shows, in turn and each time before all others, and tells how long after that the
// colour is seen.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <thread>

using namespace lumbra;
namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr auto glance = 15ms;   // between two looks at the whole display: more would keep a processor from the program
constexpr auto patience = 60s;  // that a program has to show what is waited for
constexpr int rowsOfFrame = 20; // that hold more than one colour in what is more than an empty window
constexpr int statusLine = 40;  // pixels
constexpr int patch = 8;        // pixels a side that are looked at where the picture is known to come

// Thrown, so that the program that was started ends.
struct Failure {
    const char* message;
};

[[noreturn]] void fail(const char* message) {
    throw Failure{message};
}

struct Place {
    int x = 0;
    int y = 0;
};

// The pixels of the display, without the pointer.
class Screen {
public:
    Screen() : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection))
            fail("there is no display");
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_root = screen->root;
        m_width = screen->width_in_pixels;
        m_height = screen->height_in_pixels;
        const int block = ::shmget(IPC_PRIVATE, size_t(m_width) * m_height * sizeof(uint32_t), IPC_CREAT | 0600);
        m_pixels = static_cast<uint32_t*>(::shmat(block, nullptr, 0));
        m_segment = xcb_generate_id(m_connection);
        const auto attached = xcb_shm_attach_checked(m_connection, m_segment, uint32_t(block), 0);
        if (xcb_request_check(m_connection, attached))
            fail("the display shares no memory");
        ::shmctl(block, IPC_RMID, nullptr);
    }
    ~Screen() { xcb_disconnect(m_connection); }

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    int width() const { return m_width; }
    int height() const { return m_height - statusLine; }

    std::span<const uint32_t> take() { return take({}, m_width, height()); }

    std::span<const uint32_t> take(Place at, int width, int height) {
        const auto wish = xcb_shm_get_image(m_connection, m_root, int16_t(at.x), int16_t(at.y), uint16_t(width),
                                            uint16_t(height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0);
        std::free(xcb_shm_get_image_reply(m_connection, wish, nullptr));
        return {m_pixels, size_t(width) * size_t(height)};
    }

    // Away from everything that answers a pointer over it.
    void hidePointer() {
        xcb_warp_pointer(m_connection, XCB_NONE, m_root, 0, 0, 0, 0, int16_t(m_width / 2), int16_t(m_height - 1));
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint32_t* m_pixels = nullptr;
    xcb_shm_seg_t m_segment = 0;
};

// A program in a process group of its own, which ends with the object.
class Program {
public:
    explicit Program(char** arguments) : m_process(::fork()) {
        if (m_process == 0) {
            ::setpgid(0, 0);
            ::dup2(STDERR_FILENO, STDOUT_FILENO); // the results alone go there
            ::execvp(arguments[0], arguments);
            std::perror(arguments[0]);
            ::_exit(127);
        }
        ::setpgid(m_process, m_process);
    }
    ~Program() {
        ::kill(-m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

private:
    pid_t m_process;
};

bool isFrame(std::span<const uint32_t> pixels, int width) {
    int rows = 0;
    for (size_t start = 0; start < pixels.size(); start += size_t(width)) {
        const auto row = pixels.subspan(start, size_t(width));
        rows += std::ranges::any_of(row, [&](uint32_t pixel) { return pixel != row.front(); });
    }
    return rows >= rowsOfFrame;
}

struct Shown {
    double firstFrame = -1; // ms
    double complete = -1;
};

Shown watch(Screen& screen, bench::Clock::time_point start, std::chrono::milliseconds still) {
    Shown shown;
    std::vector<uint32_t> before;
    auto changed = start;
    for (;;) {
        const auto now = bench::Clock::now();
        const auto pixels = screen.take();
        if (!std::ranges::equal(pixels, before)) {
            before.assign(pixels.begin(), pixels.end());
            changed = now;
            shown.complete = bench::millisecondsSince(start);
            if (shown.firstFrame < 0 && isFrame(pixels, screen.width()))
                shown.firstFrame = shown.complete;
        }
        if (shown.firstFrame >= 0 && now - changed > still)
            return shown;
        if (now - start > patience)
            fail("the program shows nothing, or does not come to rest");
        std::this_thread::sleep_for(glance);
    }
}

// Colours far from each other and from what a program draws by itself.
enum class Colour { magenta, green };

bool isColour(uint32_t pixel, Colour colour) {
    constexpr int most = 40;
    const auto isHigh = [pixel](int shift) { return int(pixel >> shift & 0xff) > 255 - most; };
    const auto isLow = [pixel](int shift) { return int(pixel >> shift & 0xff) < most; };
    return colour == Colour::magenta ? isHigh(16) && isLow(8) && isHigh(0) : isLow(16) && isHigh(8) && isLow(0);
}

// The middle of what is magenta.
std::optional<Place> findMagenta(Screen& screen) {
    constexpr int coarse = 4;
    const auto pixels = screen.take();
    Place least{screen.width(), screen.height()};
    Place most{-1, -1};
    for (int y = 0; y < screen.height(); y += coarse)
        for (int x = 0; x < screen.width(); x += coarse)
            if (isColour(pixels[size_t(y) * size_t(screen.width()) + size_t(x)], Colour::magenta)) {
                least = {std::min(least.x, x), std::min(least.y, y)};
                most = {std::max(most.x, x), std::max(most.y, y)};
            }
    if (most.x - least.x < 2 * patch || most.y - least.y < 2 * patch)
        return {};
    return Place{(least.x + most.x) / 2, (least.y + most.y) / 2};
}

void waitFor(const std::function<bool()>& condition, std::chrono::milliseconds pause) {
    const auto start = bench::Clock::now();
    while (!condition()) {
        if (bench::Clock::now() - start > patience)
            fail("the picture that lands is not seen");
        std::this_thread::sleep_for(pause);
    }
}

// What lands in a folder; taken away again with the object.
class Landings {
public:
    Landings(fs::path folder, int most) : m_folder(std::move(folder)), m_left(most) {}
    ~Landings() {
        for (const fs::path& file : m_files)
            fs::remove(file);
    }

    Landings(const Landings&) = delete;
    Landings& operator=(const Landings&) = delete;

    // At one go, and the first of all by its name as well as by its date.
    bench::Clock::time_point add(const fs::path& picture) {
        const fs::path ready = picture.parent_path() / ".landing"; // where no viewer looks
        fs::copy_file(picture, ready, fs::copy_options::overwrite_existing);
        m_files.push_back(m_folder / ("0-landed-" + std::to_string(m_left--) + ".jpg"));
        const auto start = bench::Clock::now();
        fs::rename(ready, m_files.back());
        return start;
    }

private:
    fs::path m_folder;
    int m_left;
    std::vector<fs::path> m_files;
};

// Milliseconds until the pictures are seen, each after a quiet time. The first only shows where they come.
std::vector<double> land(Screen& screen, char** pictures, const fs::path& folder, int times,
                         std::chrono::milliseconds still) {
    std::vector<double> taken;
    Landings landings(folder, times + 1);
    landings.add(pictures[0]);
    waitFor([&] { return bool(findMagenta(screen)); }, glance);
    watch(screen, bench::Clock::now(), still);
    const std::optional<Place> place = findMagenta(screen); // once all has moved to where it belongs
    if (!place)
        fail("the picture that has landed does not stay");
    for (int turn = 1; turn <= times; ++turn) {
        const auto colour = Colour(turn % 2);
        const auto isThere = [&] {
            return std::ranges::all_of(screen.take({place->x - patch / 2, place->y - patch / 2}, patch, patch),
                                       [colour](uint32_t pixel) { return isColour(pixel, colour); });
        };
        const auto start = landings.add(pictures[turn % 2]);
        waitFor(isThere, 1ms);
        taken.push_back(bench::millisecondsSince(start));
        watch(screen, bench::Clock::now(), still);
    }
    return taken;
}

void measure(int count, char** arguments) {
    const bool landing = count > 1 && std::strcmp(arguments[1], "--landing") == 0;
    const int words = landing ? 6 : 1;
    if (count < words + 2)
        fail("usage: bench_screen [--landing MAGENTA GREEN FOLDER TIMES] STILL PROGRAM [ARGUMENT...]");
    const std::chrono::milliseconds still(std::atoi(arguments[words]));
    Screen screen;
    screen.hidePointer();
    const auto start = bench::Clock::now();
    const Program program(arguments + words + 1);
    const Shown shown = watch(screen, start, still);
    bench::report("screen_frame", shown.firstFrame);
    bench::report("screen_complete", shown.complete);
    if (!landing)
        return;
    const std::vector<double> taken = land(screen, arguments + 2, arguments[4], std::atoi(arguments[5]), still);
    bench::report("screen_landing", bench::median(taken));
    bench::report("screen_landing_worst", *std::ranges::max_element(taken));
}

} // namespace

int main(int count, char** arguments) {
    try {
        measure(count, arguments);
        return 0;
    } catch (const Failure& failure) {
        std::fprintf(stderr, "bench_screen: %s\n", failure.message);
        return 1;
    }
}
