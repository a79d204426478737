// Stars are kept on the files themselves, in an extended attribute: a star moves, copies and renames with its file, and
// the command sees the same one as the application. Its value is when the file was starred.
//
// No state and no lock; safe on any thread. A value that is missing, too long or no number is no star.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Date.h"
#include "platform/ExtendedAttributes.h"
#include "platform/Location.h"

#include <optional>

namespace lumbra::Stars {

inline constexpr AttributeName attribute{"com.lumbra.starred"};

// When the file was starred. A file starred under the product's former name counts, and is left as it is.
std::optional<Date> read(const Location& file);

// The same for the entry of an open folder, as a walk meets it by the million: one system call for a file without a
// star. A symbolic link has none.
std::optional<Date> readAt(int folder, const char* entry);

// Stars the file as of now, even if it has a star, or takes its star away, which succeeds for a file without one.
// False on failure.
bool write(const Location& file, bool starred);

} // namespace lumbra::Stars
