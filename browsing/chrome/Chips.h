// What stands in the header's chips and in its sort menu, in their order, for views.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

// One choice of a header: the value that a click sets, and how it is called.
class Choice {
    Q_GADGET
    Q_PROPERTY(QVariant value MEMBER value)
    Q_PROPERTY(QString label MEMBER label)

public:
    QVariant value;
    QString label;
};

class Chips : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QVariantList periods READ periods CONSTANT)
    Q_PROPERTY(QVariantList kinds READ kinds CONSTANT)
    Q_PROPERTY(QVariantList sortOrders READ sortOrders CONSTANT)

public:
    // Days of the Recent page.
    static QVariantList periods();

    // Raw names, in the order of the model; the page's counts stand in the same order. "all" is none of them.
    static QVariantList kinds();

    // Raw names.
    static QVariantList sortOrders();

    // What the chip of so many days says, or would say.
    Q_INVOKABLE static QString periodText(int days);

    // "999", "1.0k"; empty below 1.
    Q_INVOKABLE static QString countText(qint64 count);
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::Choice)
