// A scrubber over a clip that stands in the player.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PlayerFixture.h"
#include "media/room/Scrubber.h"

namespace lumbra {

inline Asset assetOf(const Location& file) {
    const std::optional<Asset> read = Asset::read(file);
    if (!read)
        qFatal("no asset at %s", file.path().constData());
    return *read;
}

// A track of 400 points over a clip that stands in the player.
struct Scrubbed {
    explicit Scrubbed(const Location& file) {
        player.open(file);
        scrubber.setEngine(&player.engine);
        scrubber.setWidth(400);
        scrubber.setAsset(assetOf(file));
    }
    explicit Scrubbed(const char* clip) : Scrubbed(Clips::clip(clip)) {}

    double timeAt(double part) const { return player.engine.duration() * part; }

    Player player;
    Scrubber scrubber;
};

inline bool isNear(double a, double b, double tolerance = 0.002) {
    return std::abs(a - b) <= tolerance;
}

} // namespace lumbra
