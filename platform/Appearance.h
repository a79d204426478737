// What the user asked of every program's looks: less motion, more contrast.
//
// Answers come from GNOME's own settings at first, and from the desktop's settings portal a moment later, where either
// exists; a change of mind in the portal is followed. Main thread only.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QDBusVariant;

namespace lumbra {

class Appearance : public QObject {
    Q_OBJECT

public:
    explicit Appearance(QObject* parent = nullptr);

    bool reducedMotion() const { return m_reducedMotion; }
    bool highContrast() const { return m_highContrast; }

Q_SIGNALS:
    // One of them is another than before.
    void changed();

private:
    Q_SLOT void portalChanged(const QString& group, const QString& key, const QDBusVariant& value);

    void askPortal();
    void take(const QString& group, const QString& key, const QVariant& value);
    void set(bool& field, bool value);

    bool m_reducedMotion = false;
    bool m_highContrast = false;
};

} // namespace lumbra
