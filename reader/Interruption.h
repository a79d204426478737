// Whether somebody still waits for the answer that is being made. Work that takes long asks between its steps.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/reader/SharedBlock.h"

namespace lumbra::reader::Interruption {

// From now on, the request of this number is worked on. The block must outlive the work.
void lookAt(const SharedBlock& block, quint32 number);

// In a plugin, which has an eye of its own: what the program that has loaded it sees.
void follow(bool (*isRequested)());

// May be asked at every step.
bool isRequested();

} // namespace lumbra::reader::Interruption
