// The one folder for what this process needs as a file for a while. Only its owner can look into it, and it goes with
// the process.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

namespace lumbra {

// Made at the first call, on memory where the session has a folder there, and again when it has gone: what cleans up
// old files may take it away while the process runs on. Empty when none can be made. Any thread.
Location temporaryFolder();

} // namespace lumbra
