// How wide what floats in the screening room is, and what gives way where there is no room for all of it. Pure
// functions; points.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <algorithm>

namespace lumbra::RoomLayout {

// Of the control capsule, which on a narrower stage stays as it is and reaches beyond it.
inline constexpr double narrowestCapsule = 560;
inline constexpr double widestCapsule = 1100;

// A room must be wider than this to show the drawer and the queue beside each other.
inline constexpr double widthForBoth = 1350;

inline double capsuleWidth(double stageWidth) {
    return std::clamp(stageWidth, narrowestCapsule, widestCapsule);
}

// Whether the queue is on view: it is wanted, there is more than one file to play, and the drawer leaves room.
inline bool showsQueue(bool wanted, qsizetype files, bool drawerShown, double roomWidth) {
    return wanted && files >= 2 && (!drawerShown || roomWidth > widthForBoth);
}

} // namespace lumbra::RoomLayout
