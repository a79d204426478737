// How the user likes to see pages: kept across launches and shared by all of them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PreferenceKeys.h"
#include "library/Model.h"
#include "platform/Preferences.h"

#include <QObject>
#include <QProperty>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class BrowserSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The browser holds its settings.")
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
    Q_PROPERTY(double smallestZoom READ smallest CONSTANT)
    Q_PROPERTY(double largestZoom READ largest CONSTANT)
    Q_PROPERTY(QString sort READ sortRaw WRITE setSortRaw NOTIFY sortChanged)
    Q_PROPERTY(QString kindRaw READ kindRaw WRITE setKindRaw NOTIFY kindRawChanged)
    Q_PROPERTY(bool recursive READ recursive WRITE setRecursive NOTIFY recursiveChanged)
    Q_PROPERTY(int recentDays READ recentDays WRITE setRecentDays NOTIFY recentDaysChanged)
    Q_PROPERTY(bool showInspector READ showInspector WRITE setShowInspector NOTIFY showInspectorChanged)

public:
    // The preferences must outlive it. A value that is changed there is followed here.
    explicit BrowserSettings(Preferences& preferences, QObject* parent = nullptr);

    static constexpr double smallestZoom = 100;
    static constexpr double largestZoom = 360;

    // The least width of a tile, in points; within these bounds, whatever the preferences hold.
    double zoom() const { return m_zoom; }
    void setZoom(double zoom) { m_preferences.setValue(PreferenceKeys::zoom, zoom); }

    // The order of a folder page.
    SortOrder sort() const { return m_sort; }
    void setSort(SortOrder sort) { m_preferences.setValue(PreferenceKeys::sort, rawValue(sort)); }

    // The raw name of a kind; any other string means no filter.
    QString kindRaw() const { return m_kindRaw; }
    void setKindRaw(const QString& raw) { m_preferences.setValue(PreferenceKeys::kind, raw); }
    std::optional<AssetKind> kind() const { return assetKindFromRaw(kindRaw()); }

    // Folder pages show everything below the folder.
    bool recursive() const { return m_recursive; }
    void setRecursive(bool recursive) { m_preferences.setValue(PreferenceKeys::recursive, recursive); }

    // How far back the Recent page goes.
    int recentDays() const { return m_recentDays; }
    void setRecentDays(int days) { m_preferences.setValue(PreferenceKeys::recentDays, days); }

    bool showInspector() const { return m_showInspector; }
    void setShowInspector(bool shown) { m_preferences.setValue(PreferenceKeys::inspector, shown); }

Q_SIGNALS:
    void zoomChanged();
    void sortChanged();
    void kindRawChanged();
    void recursiveChanged();
    void recentDaysChanged();
    void showInspectorChanged();

private:
    void read();
    double smallest() const { return smallestZoom; }
    double largest() const { return largestZoom; }
    QString sortRaw() const { return rawValue(sort()); }
    void setSortRaw(const QString& raw) { setSort(sortOrderFromRaw(raw).value_or(sort())); }

    Preferences& m_preferences;

    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, double, m_zoom, &BrowserSettings::zoomChanged)
    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, SortOrder, m_sort, &BrowserSettings::sortChanged)
    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, QString, m_kindRaw, &BrowserSettings::kindRawChanged)
    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, bool, m_recursive, &BrowserSettings::recursiveChanged)
    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, int, m_recentDays, &BrowserSettings::recentDaysChanged)
    Q_OBJECT_BINDABLE_PROPERTY(BrowserSettings, bool, m_showInspector, &BrowserSettings::showInspectorChanged)
};

} // namespace lumbra
