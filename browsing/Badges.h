// What a project's or a group's badge looks like: the ten hues and the mark, as views need them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Badges : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // Of a hue by its index; an index that no hue has is taken for the first.
    Q_INVOKABLE static QColor background(int hue);
    Q_INVOKABLE static QColor foreground(int hue);

    // The mark of a name, and the height of its letters as a share of the badge's side.
    Q_INVOKABLE static QString mark(const QString& name);
    Q_INVOKABLE static double letterShare(const QString& mark);
};

} // namespace lumbra
