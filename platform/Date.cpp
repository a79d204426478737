// SPDX-License-Identifier: GPL-3.0-or-later
#include "Date.h"

#include <chrono>

namespace lumbra {

Date Date::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {std::chrono::duration<double>(sinceEpoch).count()};
}

} // namespace lumbra
