// Looks through what a transfer will carry before the first byte is written, so that progress can be told and what is
// bound to fail fails at once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ProgressMeter.h"

namespace lumbra::files {

struct Survey {
    unsigned char type = 0; // of the top, a DT_ constant
    qint64 files = 0;       // and links
    qint64 bytes = 0;
};

// Throws Failure for what can't be read or is neither file, folder nor link; and Cancelled.
Survey survey(int folder, const char* name, const ProgressMeter& meter);

} // namespace lumbra::files
