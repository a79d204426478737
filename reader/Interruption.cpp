// SPDX-License-Identifier: GPL-3.0-or-later
#include "Interruption.h"

#include <poll.h>

namespace lumbra::reader::Interruption {

namespace {

int listened = -1; // a negative descriptor has never anything to say

} // namespace

void listenTo(int socket) {
    listened = socket;
}

bool isRequested() {
    pollfd socket{listened, POLLIN, 0};
    return ::poll(&socket, 1, 0) > 0;
}

} // namespace lumbra::reader::Interruption
