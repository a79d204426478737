// Every setting of the user interface: its key, its type, and its value while nobody has chosen.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

#include <array>

namespace lumbra::PreferenceKeys {

// The pages.
inline constexpr Preference<double> zoom{QLatin1String("zoom"), 170.0}; // a tile's least width, 100 to 360
inline constexpr Preference<QLatin1String> sort{QLatin1String("sort"), QLatin1String("newest")};
inline constexpr Preference<QLatin1String> kind{QLatin1String("kind"), QLatin1String("all")};
inline constexpr Preference<bool> recursive{QLatin1String("recursive"), false};
inline constexpr Preference<int> recentDays{QLatin1String("recentDays"), 7};
inline constexpr Preference<bool> inspector{QLatin1String("inspector"), true};

// The player and its room.
inline constexpr Preference<bool> playerLoop{QLatin1String("playerLoop"), false};
inline constexpr Preference<double> playerVolume{QLatin1String("playerVolume"), 1.0}; // 0 to 1
inline constexpr Preference<bool> autoplayNext{QLatin1String("autoplayNext"), true};
inline constexpr Preference<bool> playerInfo{QLatin1String("playerInfo"), false};
inline constexpr Preference<bool> playerQueue{QLatin1String("playerQueue"), true};

// The sidebar.
inline constexpr Preference<bool> projectsByActivity{QLatin1String("projectsByActivity"), true};

// The window. Where it stood: left, top, width and height, parted by blanks; empty if that was never kept.
inline constexpr Preference<QLatin1String> windowPlace{QLatin1String("windowPlace"), QLatin1String("")};
inline constexpr Preference<bool> windowMaximized{QLatin1String("windowMaximized"), false};
inline constexpr Preference<int> sidebarWidth{QLatin1String("sidebarWidth"), 264};

// The reading of files in the background.
inline constexpr Preference<bool> insightsEnabled{QLatin1String("insightsEnabled"), true};

// Names of hidden projects, a list, where older versions kept them: only read, when a library has no state of its own.
inline constexpr QLatin1String hiddenProjects{"hiddenProjects"};

// Set once the settings of the product's former name have been taken over.
inline constexpr Preference<bool> migratedLegacyPreferences{QLatin1String("migratedLegacyPreferences"), false};

// What is taken over.
inline constexpr std::array migrated{
    zoom.key,       sort.key,         kind.key,         recursive.key,  recentDays.key,  inspector.key,
    playerLoop.key, playerVolume.key, autoplayNext.key, playerInfo.key, playerQueue.key, projectsByActivity.key,
    hiddenProjects,
};

} // namespace lumbra::PreferenceKeys
