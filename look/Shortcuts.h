// How a shortcut is written in menus and tool tips: "Ctrl+Shift+N", "Del".
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Shortcuts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // Of a QKeySequence, a StandardKey or a string such as "Ctrl+K"; empty for anything else.
    Q_INVOKABLE static QString text(const QVariant& shortcut);
};

} // namespace lumbra
