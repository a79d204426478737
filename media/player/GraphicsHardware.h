// Whether there is a graphics processor that could decode films. Where there is none it is not tried: the libraries of
// drivers that are looked for in vain say so on standard error.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QDir>

namespace lumbra {

// Looks at the machine's devices, in the folder given.
inline bool hasGraphicsHardware(const Location& devices = Location(QByteArray("/dev"))) {
    const QDir cards(devices.child("dri").toString());
    return !cards.entryList({QStringLiteral("renderD*")}, QDir::System | QDir::Files).isEmpty()
           || QFile::exists(devices.child("nvidiactl").toString());
}

} // namespace lumbra
