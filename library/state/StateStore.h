// Keeps LibraryState on disk, as <root>/.lumbra/library.json: written in full at each change, atomically, so that
// another reader sees the old file or the new one and never a mixture.
//
// Blocking, on any thread; the file is small.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LibraryState.h"
#include "platform/Location.h"

#include <optional>

namespace lumbra::StateStore {

// Absent when there is no file or it can't be read or decoded as a whole.
std::optional<LibraryState> load(const Location& root);

// A failure leaves the old file and is silent: the next change writes the whole state again.
void save(const LibraryState& state, const Location& root);

} // namespace lumbra::StateStore
