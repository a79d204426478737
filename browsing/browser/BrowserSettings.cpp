// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserSettings.h"

#include <algorithm>

namespace lumbra {

BrowserSettings::BrowserSettings(Preferences& preferences, QObject* parent)
    : QObject(parent), m_preferences(preferences) {
    read();
    connect(&preferences, &Preferences::changed, this, &BrowserSettings::read);
}

void BrowserSettings::read() {
    m_zoom = std::clamp(m_preferences.value(PreferenceKeys::zoom), smallestZoom, largestZoom);
    m_sort = sortOrderFromRaw(m_preferences.value(PreferenceKeys::sort)).value_or(SortOrder::newest);
    m_kindRaw = m_preferences.value(PreferenceKeys::kind);
    m_recursive = m_preferences.value(PreferenceKeys::recursive);
    m_recentDays = m_preferences.value(PreferenceKeys::recentDays);
    m_showInspector = m_preferences.value(PreferenceKeys::inspector);
}

} // namespace lumbra
