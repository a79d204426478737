// Takes the settings over that the product kept under its former name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

namespace lumbra {

// Copies each setting that `preferences` lacks from the older suite, once and for all. An older suite that can't be
// read leaves it for the next launch; one that does not exist has nothing to copy. Main thread, at launch, before
// anything reads the preferences.
void migratePreferences(Preferences& preferences);

} // namespace lumbra
