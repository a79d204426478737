// What the user asked of every program's looks, as the theme of one engine reads it; set through Look::setAppearance.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Comfort : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)

public:
    explicit Comfort(QObject* parent = nullptr) : QObject(parent) {}

    bool highContrast() const { return m_highContrast; }
    bool reducedMotion() const { return m_reducedMotion; }

    void set(bool highContrast, bool reducedMotion);

Q_SIGNALS:
    void changed();

private:
    bool m_highContrast = false;
    bool m_reducedMotion = false;
};

} // namespace lumbra
