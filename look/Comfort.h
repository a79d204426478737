// What the user asked of every program's looks, as the theme reads it: one object for the whole process, set through
// Look::setAppearance.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace lumbra {

class Comfort : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool highContrast MEMBER highContrast NOTIFY changed)
    Q_PROPERTY(bool reducedMotion MEMBER reducedMotion NOTIFY changed)

public:
    static Comfort& shared();

    // Every engine sees the same object.
    static Comfort* create(QQmlEngine*, QJSEngine*);

    bool highContrast = false;
    bool reducedMotion = false;

Q_SIGNALS:
    void changed();

private:
    Comfort() = default;
};

} // namespace lumbra
