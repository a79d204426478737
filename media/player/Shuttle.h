// How the keys J, K and L change the rate at which a film runs. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace lumbra {

// No key makes a film run faster than this, in either direction.
inline constexpr double fastestShuttle = 4;

// The rate after another press in a direction (negative is backward, positive forward): twice as fast while it runs in
// that direction already, otherwise once. Not for 0, which is to stand.
inline double shuttleAfter(double shuttle, int direction, bool isPlaying) {
    const bool sameDirection = (direction > 0) == (shuttle > 0);
    if (isPlaying && sameDirection)
        return std::clamp(shuttle * 2, -fastestShuttle, fastestShuttle);
    return direction > 0 ? 1 : -1;
}

} // namespace lumbra
