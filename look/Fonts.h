// The typefaces of the application: Inter, and the same face with digits of one width for numbers that change in place.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Fonts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString digits READ digits CONSTANT)

public:
    // The family of all text. The desktop's own sans serif when Inter is not installed.
    static QString text();

    // The family of numbers: every digit as wide as the others. The same as `text` when it could not be made. The first
    // call makes it, which takes an application object and some two milliseconds.
    static QString digits();

    // A copy of an OpenType font in which tabular digits are the ordinary ones, under the family `name`, which must be
    // as long as `family` is. Empty when the bytes are no such font. Qt 6.4 cannot switch a font's features on.
    static QByteArray withTabularDigits(QByteArray font, const QByteArray& family, const QByteArray& name);
};

} // namespace lumbra
