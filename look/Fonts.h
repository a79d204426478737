// The typefaces of the application: Inter, and the same face with digits of one width for numbers that change in place.
// In both every letter is the one that was written: by itself Inter turns the "x" of a file called "1920x1080.png" into
// a sign of multiplication, and hyphens into dashes and arrows.
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
    // Which of its digits a typeface shows unasked.
    enum class Digits { proportional, tabular };

    // The family of all text. The desktop's own sans serif when Inter is not installed. The first call makes it, which
    // takes an application object and some two milliseconds.
    static QString text();

    // The family of numbers: every digit as wide as the others. The same as `text` when it could not be made; made like
    // that.
    static QString digits();

    // A copy of an OpenType font without contextual alternates, and with these digits, under the family `name`, which
    // must be as long as `family` is. Empty when the bytes are no such font. Qt 6.4 cannot switch a font's features.
    static QByteArray literal(QByteArray font, const QByteArray& family, const QByteArray& name, Digits digits);
};

} // namespace lumbra
