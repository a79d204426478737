// SPDX-License-Identifier: GPL-3.0-or-later
#include "Preferences.h"

#include "Tasks.h"

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

#include <chrono>
#include <cmath>

namespace lumbra {

namespace {

// A slider that is dragged changes its value sixty times a second.
constexpr auto quietTime = std::chrono::milliseconds(300);

void write(const QString& file, const QVariantHash& changes) {
    QSettings settings(file, QSettings::IniFormat);
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change->isValid())
            settings.setValue(change.key(), *change);
        else
            settings.remove(change.key());
    }
    settings.sync();
}

Location configurationFolder() {
    return Location(QStringView(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)));
}

} // namespace

Preferences& Preferences::shared() {
    // Never destroyed, since views may outlive whatever would own it; the application object's end writes it out.
    static Preferences* const preferences = [] {
        qAddPostRoutine([] { shared().sync(); });
        return new Preferences(standardFile());
    }();
    return *preferences;
}

Location Preferences::standardFile() {
    return configurationFolder().child("lumbra").child("Lumbra.ini");
}

Location Preferences::suiteFile(QStringView suite) {
    return configurationFolder().child(QString(suite.toString() + QLatin1String(".ini")));
}

Preferences::Preferences(const Location& file) : m_file(file.toString()) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(quietTime);
    connect(&m_timer, &QTimer::timeout, this, &Preferences::save);

    const QSettings settings(m_file, QSettings::IniFormat);
    m_readable = settings.status() == QSettings::NoError;
    for (const QString& key : settings.allKeys())
        m_values.insert(key, settings.value(key));
}

Preferences::~Preferences() {
    sync();
}

// The file holds texts alone, so that a value is a flag or a number if its text reads as one.

bool Preferences::value(const Preference<bool>& preference) const {
    const QVariant found = value(QString(preference.key));
    if (found.typeId() == QMetaType::Bool)
        return found.toBool();
    const QString text = found.toString();
    if (text == u"true" || text == u"1")
        return true;
    return text == u"false" || text == u"0" ? false : preference.fallback;
}

int Preferences::value(const Preference<int>& preference) const {
    bool isNumber = false;
    const int number = value(QString(preference.key)).toString().toInt(&isNumber);
    return isNumber ? number : preference.fallback;
}

double Preferences::value(const Preference<double>& preference) const {
    bool isNumber = false;
    const double number = value(QString(preference.key)).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? number : preference.fallback;
}

QString Preferences::value(const Preference<QLatin1String>& preference) const {
    const QVariant found = value(QString(preference.key));
    return found.typeId() == QMetaType::QString ? found.toString() : QString(preference.fallback);
}

void Preferences::setValue(const QString& key, const QVariant& value) {
    if (!value.isValid())
        return remove(key);
    if (m_values.value(key) == value)
        return;
    m_values.insert(key, value);
    saveLater(key);
}

void Preferences::remove(const QString& key) {
    if (m_values.remove(key))
        saveLater(key);
}

void Preferences::saveLater(const QString& key) {
    m_unsaved.insert(key, m_values.value(key));
    m_timer.start();
    Q_EMIT changed(key);
}

void Preferences::save() {
    // One at a time: a second writer could overtake the first, and the older value would stay.
    if (m_saving.isRunning()) {
        m_timer.start();
        return;
    }
    m_saving = Tasks::run(Tasks::Pool::utility,
                          [file = m_file, changes = std::exchange(m_unsaved, {})] { write(file, changes); });
}

void Preferences::sync() {
    m_timer.stop();
    m_saving.waitForFinished();
    if (!m_unsaved.isEmpty())
        write(m_file, std::exchange(m_unsaved, {}));
}

} // namespace lumbra
