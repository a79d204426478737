// SPDX-License-Identifier: GPL-3.0-or-later
#include "Startup.h"

#include <atomic>

namespace lumbra::Startup {

namespace {
std::atomic<bool> isUnderWay = false;
}

void begin() {
    isUnderWay = true;
}

void end() {
    isUnderWay = false;
    isUnderWay.notify_all();
}

void awaitEnd() {
    isUnderWay.wait(true);
}

} // namespace lumbra::Startup
