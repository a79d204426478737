// Whether the web engine may start here: it ends the whole process of a superuser who has not told it to do without
// its sandbox.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class WebRights : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE static bool mayStart();
};

} // namespace lumbra
