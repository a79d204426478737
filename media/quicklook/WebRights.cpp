// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebRights.h"

#include <unistd.h>

namespace lumbra {

bool WebRights::mayStart() {
    return ::geteuid() != 0 || qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") != 0;
}

} // namespace lumbra
