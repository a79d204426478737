// Diagnostic lines on standard error, off unless the environment holds LUMBRA_HANGLOG, with any value.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lumbra::Log {

// Read once, at the first call.
bool isOn();

// One line, as printf takes it, without the newline. Safe on any thread.
[[gnu::format(printf, 1, 2)]] void line(const char* format, ...);

} // namespace lumbra::Log
