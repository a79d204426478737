// How a film's tile is skimmed: where in the film the pointer stands, and which frame stands for it. Pure functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <chrono>

namespace lumbra::Skim {

constexpr int frames = 16;       // in a strip
constexpr int longestSide = 260; // of a frame, in pixels
constexpr double margin = 3;     // of the tile, in points

// A pointer that merely passes across costs nothing.
constexpr std::chrono::milliseconds rest(150);

// From 0 to 1; `x` is the pointer's in the tile's coordinates, `size` the width of its picture.
inline double positionAt(double x, double size) {
    return size > 0 ? std::clamp((x - margin) / size, 0.0, 1.0) : 0.0;
}

// Which of `count` frames, at least one, stands for the position.
inline qsizetype frameAt(double position, qsizetype count) {
    return std::min(qsizetype(position * double(count)), count - 1);
}

} // namespace lumbra::Skim
