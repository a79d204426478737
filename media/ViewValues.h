// Makes known to the tools of QML which values from below views hand from one C++ property to another, without a look
// into them: files, where they lie, and pictures.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "platform/Location.h"

#include <QImage>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

struct AssetValue {
    Q_GADGET
    QML_FOREIGN(lumbra::Asset)
    QML_ANONYMOUS
};

struct LocationValue {
    Q_GADGET
    QML_FOREIGN(lumbra::Location)
    QML_ANONYMOUS
};

struct ImageValue {
    Q_GADGET
    QML_FOREIGN(QImage)
    QML_ANONYMOUS
};

} // namespace lumbra
