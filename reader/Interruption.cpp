// SPDX-License-Identifier: GPL-3.0-or-later
#include "Interruption.h"

#include <poll.h>

#include <chrono>

namespace lumbra::reader::Interruption {

namespace {

using Clock = std::chrono::steady_clock;

// Nobody notices that a stop is heard this late, and work of short steps would spend its time asking.
constexpr std::chrono::milliseconds deafness(2);

int listened = -1; // a negative descriptor has never anything to say
Clock::time_point lastSilence;

} // namespace

void listenTo(int socket) {
    listened = socket;
    lastSilence = {};
}

bool isRequested() {
    const auto now = Clock::now();
    if (now - lastSilence < deafness)
        return false;
    pollfd socket{listened, POLLIN, 0};
    if (::poll(&socket, 1, 0) > 0)
        return true;
    lastSilence = now;
    return false;
}

} // namespace lumbra::reader::Interruption
