// While the window comes up, work that nobody waits for yet stands back: going through the library would take from the
// first frame the processors that it is drawn with.
//
// A program without a window never begins to start up, and nothing stands back in it. Safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stop_token>

namespace lumbra::Startup {

void begin();

// The first frame is shown, or none will be.
void end();

// Returns when no start-up is under way, or nobody waits for the work any more.
void awaitEnd(const std::stop_token& stop = {});

} // namespace lumbra::Startup
