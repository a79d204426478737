// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreferenceMigration.h"

#include "PreferenceKeys.h"

namespace lumbra {

void migratePreferences(Preferences& preferences) {
    if (preferences.value(PreferenceKeys::migratedLegacyPreferences))
        return;
    const Preferences older(Preferences::suiteFile(u"agency.tarnwick.folia"));
    if (!older.isReadable())
        return;
    for (const QLatin1String key : PreferenceKeys::migrated) {
        if (!preferences.contains(key) && older.contains(key))
            preferences.setValue(QString(key), older.value(QString(key)));
    }
    preferences.setValue(PreferenceKeys::migratedLegacyPreferences, true);
}

} // namespace lumbra
