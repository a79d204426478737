// Settings of the user interface that survive a launch: small values under short keys, which belong to the application
// and not to a library.
//
// Values are held in memory and written a moment after the last change, off the main thread, since safe writing waits
// for the disk. Main thread only.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QFuture>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariant>

namespace lumbra {

// A setting with its type and what stands for it while nobody has chosen, or while the file holds something else.
template <typename Value>
struct Preference {
    QLatin1String key;
    Value fallback;
};

class Preferences : public QObject {
    Q_OBJECT

public:
    // The application's own; written out once more when the application object goes.
    static Preferences& shared();

    // The file of the application's own settings, and of another suite, which has a name like "org.example.name".
    static Location standardFile();
    static Location suiteFile(QStringView suite);

    // A file that does not exist yet holds no values; one that can't be read, none either.
    explicit Preferences(const Location& file);
    ~Preferences() override;

    // False when the file exists and can't be read or makes no sense.
    bool isReadable() const { return m_readable; }

    bool value(const Preference<bool>& preference) const;
    int value(const Preference<int>& preference) const;
    double value(const Preference<double>& preference) const;
    QString value(const Preference<QLatin1String>& preference) const;

    void setValue(const Preference<bool>& preference, bool value) { set(preference, value); }
    void setValue(const Preference<int>& preference, int value) { set(preference, value); }
    void setValue(const Preference<double>& preference, double value) { set(preference, value); }
    void setValue(const Preference<QLatin1String>& preference, const QString& value) { set(preference, value); }

    // Whatever stands under a key, in the type that it was set with or, read from the file, as text; invalid if
    // nothing.
    QVariant value(const QString& key) const { return m_values.value(key); }
    bool contains(const QString& key) const { return m_values.contains(key); }
    void setValue(const QString& key, const QVariant& value);
    void remove(const QString& key);

    // Writes what is not written yet, and waits for it.
    void sync();

Q_SIGNALS:
    // The value under a key is another one now; not sent for an equal one.
    void changed(const QString& key);

private:
    // Compares as the setting's type, since what comes from the file is text.
    template <typename Setting, typename Value>
    void set(const Setting& preference, const Value& given) {
        const QString key(preference.key);
        if (!contains(key) || value(preference) != given)
            setValue(key, QVariant(given));
    }

    void saveLater(const QString& key);
    void save();

    const QString m_file;
    bool m_readable = true;
    QVariantHash m_values;
    QVariantHash m_unsaved; // what to write; an invalid value stands for a key to remove
    QTimer m_timer;
    QFuture<void> m_saving;
};

} // namespace lumbra
