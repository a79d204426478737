// Which tiles are selected and from where the next range or step is measured, as a value: each operation yields the
// selection after it. Paths, not assets, so that a selection survives a reload.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PathSet.h"

namespace lumbra {

struct Selection {
    PathSet paths; // a path whose file went away stays
    std::optional<Location> anchor;

    static Selection just(const Location& path) { return {{path}, path}; }

    // A click on a tile of `list`: with Ctrl it joins or leaves, with Shift the range from the anchor replaces all, and
    // otherwise, or where the list does not hold the anchor, it alone is selected.
    Selection clicked(const Location& path, const PageList& list, Qt::KeyboardModifiers modifiers) const;

    // An arrow key: `step` positions on from the anchor, up to either end; the first tile if there is no anchor.
    Selection stepped(int step, const PageList& order) const;

    // What an action on a tile applies to: all selected files that the page still shows if the tile is one of the
    // selected, otherwise the tile alone.
    PathSet targets(const Location& url, const PageList& order) const;

    friend bool operator==(const Selection&, const Selection&) = default;
};

// The asset that a pending reveal means: its path equals the canonical form of the pending one. Absent while the page
// does not hold it.
std::optional<Asset> revealed(const std::optional<Location>& pending, const PageList& assets);

} // namespace lumbra
