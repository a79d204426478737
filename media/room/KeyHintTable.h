// Which keys the screening room names to the user, by the kind of the file on show.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

struct KeyHint {
    Q_GADGET
    Q_PROPERTY(QString keys MEMBER keys)
    Q_PROPERTY(QString meaning MEMBER meaning)

public:
    QString keys;
    QString meaning;

    friend bool operator==(const KeyHint&, const KeyHint&) = default;
};

QList<KeyHint> keyHintsFor(AssetKind kind);

// The same for the views.
class KeyHintTable : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // A list of KeyHint; `stage` as the room names it. A film in a web view is no "video": it has none of the player's
    // keys.
    Q_INVOKABLE static QVariantList hintsFor(const QString& stage);
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::KeyHint)
