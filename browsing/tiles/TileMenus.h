// What stands in the context menus of tiles, in which order, and what each item does.
//
// A menu is made anew each time it opens, from what the library holds then. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/MenuEntry.h"
#include "browsing/NamePrompt.h"
#include "browsing/browser/PathSet.h"
#include "library/Library.h"

#include <functional>

namespace lumbra::TileMenus {

// What the page itself does for its menus.
struct Page {
    std::function<void()> play;
    std::function<void(const Location& url)> rename;
    std::function<void(const QList<Location>& urls)> trash;
    std::function<void(const NamePrompt& prompt)> ask;
};

// For the file's tile. `targets` are what the actions apply to: the file alone, or all that is selected with it. They
// may be 100,000, so their paths are listed only by the action that is chosen.
QList<MenuEntry> asset(Library* library, const Page& page, const Location& url, const PathSet& targets);

// "Move To": the folders of the project that holds `near`, any other folder, and a new one beside `near`.
MenuEntry move(Library* library, const Page& page, const Location& near, const PathSet& targets);

QList<MenuEntry> folder(Library* library, const Location& url);

} // namespace lumbra::TileMenus
