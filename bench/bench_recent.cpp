// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_recent LIBRARY: the Recent page over a whole library: the sections in the background, and the longest task that
// a load gives the main thread, from turning to the page to its rows.
#include "MainThread.h"
#include "browsing/browser/Browser.h"
#include "library/Scanner.h"

using namespace lumbra;

namespace {

constexpr double month = 30 * 86400.0;

void wait(const std::function<bool()>& condition) {
    bench::wait(condition, "bench_recent: the page did not load");
}

} // namespace

int main(int count, char** arguments) {
    bench::Application application(count, arguments);
    if (count != 2) {
        std::fprintf(stderr, "usage: bench_recent LIBRARY\n");
        return 2;
    }
    Library library(Location(QByteArray(arguments[1])).canonical(), true);
    Browser browser(&library);
    browser.rows()->setWidth(1140);
    browser.appear();
    wait([&] { return !library.indexing() && browser.loaded() && browser.rows()->rowCount() > 0; });

    std::vector<double> pure;
    std::vector<double> whole;
    std::vector<double> longest;
    for (int i = 0; i < 9; ++i) {
        auto start = bench::Clock::now();
        const auto page = PageLoad::recent(library.index(), {}, Date::now() - month, PageFilter({}, QString()), {});
        pure.push_back(bench::millisecondsSince(start));

        library.setPlace(Place::starred());
        wait([&] { return browser.page() == QStringLiteral("starred") && browser.loaded(); });
        application.longest = 0;
        start = bench::Clock::now();
        library.setPlace(Place::recent());
        wait([&] { return browser.page() == QStringLiteral("recent") && browser.loaded(); });
        whole.push_back(bench::millisecondsSince(start));
        longest.push_back(application.longest);
    }
    bench::report("recent_sections", bench::median(pure));
    bench::report("recent_page", bench::median(whole));
    bench::report("recent_main_thread", bench::median(longest));
}
