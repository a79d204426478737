// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBus.h"

#include "Location.h"

namespace lumbra {

bool sessionBusIsNamed() {
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
           || (!runtimeFolder.isEmpty() && Location(runtimeFolder).child("bus").exists());
}

std::optional<QDBusConnection> sessionBus() {
    if (!sessionBusIsNamed())
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace lumbra
