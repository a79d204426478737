// How many columns a grid has at a width, and how wide they are: as many as fit at the least width, each grown to share
// what is left, up to the greatest width.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

namespace lumbra {

struct AdaptiveColumns {
    int count = 1;
    double width = 0;

    // All in points; `available` lies within the grid's margins.
    static AdaptiveColumns fitting(double available, double minimum, double maximum, double spacing) {
        const int count = std::max(1, int(std::floor((available + spacing) / (minimum + spacing))));
        const double share = (available - (count - 1) * spacing) / count;
        return {count, std::max(0.0, std::min(maximum, share))};
    }

    friend bool operator==(const AdaptiveColumns&, const AdaptiveColumns&) = default;
};

} // namespace lumbra
