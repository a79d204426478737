// SPDX-License-Identifier: GPL-3.0-or-later
#include "Interruption.h"

namespace lumbra::reader::Interruption {

namespace {

SharedBlock block;
quint32 current = 0;
bool (*followed)() = nullptr;

} // namespace

void lookAt(const SharedBlock& shared, quint32 number) {
    block = shared;
    current = number;
}

void follow(bool (*isRequested)()) {
    followed = isRequested;
}

bool isRequested() {
    return followed ? followed() : block.memory() && block.isStopped(current);
}

} // namespace lumbra::reader::Interruption
