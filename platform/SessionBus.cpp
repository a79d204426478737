// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBus.h"

#include "Location.h"

namespace lumbra {

std::optional<QDBusConnection> sessionBus() {
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    const bool isNamed = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
                         || (!runtimeFolder.isEmpty() && Location(runtimeFolder).child("bus").exists());
    if (!isNamed)
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace lumbra
