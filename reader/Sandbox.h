// What the reader takes away from itself before it looks at the first foreign byte: it may read files, compute and
// answer; it has no network, starts no program, writes no file, and its memory, time and files are bounded.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace lumbra::reader::Sandbox {

// The process ends when its parent's thread does. To be called first, so that no reader outlives the application.
void tieToParent();

// Takes the rights away, for good. Libraries that need more than reading to start must be started before. False if the
// kernel does not grant it; then nothing foreign may be read.
[[nodiscard]] bool enter();

// False in builds under a sanitizer, which maps terabytes. All other rights are taken away there too.
extern const bool boundsMemory;

// The processor time that the process may use from now on; after it the kernel ends it. Each request sets it anew.
void limitProcessorTime(std::chrono::milliseconds time);

} // namespace lumbra::reader::Sandbox
