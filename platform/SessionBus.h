// The user's message bus, where there is one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>

#include <optional>

namespace lumbra {

// Absent when nothing says where a bus would be. To ask for one regardless would start a bus of our own, which nobody
// else is on and which outlives us.
std::optional<QDBusConnection> sessionBus();

} // namespace lumbra
