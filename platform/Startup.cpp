// SPDX-License-Identifier: GPL-3.0-or-later
#include "Startup.h"

#include <condition_variable>
#include <mutex>

namespace lumbra::Startup {

namespace {

struct State {
    std::mutex mutex;
    std::condition_variable_any ended;
    bool isUnderWay = false;
};

State& state() {
    // Never destroyed: threads that stand back may outlive all else.
    static auto* const one = new State;
    return *one;
}

} // namespace

void begin() {
    const std::lock_guard lock(state().mutex);
    state().isUnderWay = true;
}

void end() {
    {
        const std::lock_guard lock(state().mutex);
        state().isUnderWay = false;
    }
    state().ended.notify_all();
}

void awaitEnd(const std::stop_token& stop) {
    std::unique_lock lock(state().mutex);
    state().ended.wait(lock, stop, [] { return !state().isUnderWay; });
}

} // namespace lumbra::Startup
