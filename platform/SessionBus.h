// The user's message bus, where there is one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>

#include <optional>

namespace lumbra {

// False when nothing says where a bus would be. To ask for one regardless would start a bus of our own, which nobody
// else is on and which outlives us.
bool sessionBusIsNamed();

// Absent when none is named, or none answers there.
std::optional<QDBusConnection> sessionBus();

} // namespace lumbra
