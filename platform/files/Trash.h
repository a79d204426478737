// The desktop's trash.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Failure.h"

#include <optional>

namespace lumbra::files {

std::optional<Failure> moveToTrash(const Location& location);

} // namespace lumbra::files
