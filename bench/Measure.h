// What the measurements share: medians of interleaved runs, and results as lines of "name value" for script/bench.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace lumbra::bench {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::ranges::sort(values);
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

struct Run {
    const char* name;
    std::function<void()> work;
    std::vector<double> milliseconds = {};
};

// Runs all in turn, so that what the machine does beside them falls on each alike. The first round only warms up.
inline void interleave(std::vector<Run>& runs, int rounds) {
    for (int round = 0; round <= rounds; ++round)
        for (Run& run : runs) {
            const auto start = Clock::now();
            run.work();
            if (round > 0)
                run.milliseconds.push_back(millisecondsSince(start));
        }
}

inline void report(const char* name, double value) {
    std::printf("%s %.6g\n", name, value);
    std::fflush(stdout);
}

} // namespace lumbra::bench
