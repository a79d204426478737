// SPDX-License-Identifier: GPL-3.0-or-later
#include "Interruption.h"

namespace lumbra::reader::Interruption {

namespace {

SharedBlock block;
quint32 current = 0;

} // namespace

void lookAt(const SharedBlock& shared, quint32 number) {
    block = shared;
    current = number;
}

bool isRequested() {
    return block.memory() && block.isStopped(current);
}

} // namespace lumbra::reader::Interruption
