// What the controls of the player say, as texts and names of symbols. Pure functions for the views.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Transport : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(QList<double> speeds READ speeds CONSTANT)

public:
    // What the speed menu offers, in its order.
    static QList<double> speeds() { return {0.5, 1, 1.25, 1.5, 2}; }

    // "2×", "1.25×".
    Q_INVOKABLE static QString speedText(double speed);

    // What the badge says while the keys J and L run the film; empty while they don't.
    Q_INVOKABLE static QString shuttleText(bool isPlaying, double shuttle);

    Q_INVOKABLE static QString volumeSymbol(double volume, bool muted);

    // As the player writes times; see Timecode.h.
    Q_INVOKABLE static QString timecode(double seconds, bool fraction);
};

} // namespace lumbra
