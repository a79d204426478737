// The key for the remote decision service, kept by the desktop's keyring. Nothing of it is kept here.
//
// All calls talk to the keyring over the session bus and block: not for the main thread. Safe on any other.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace lumbra::Secrets {

// The key in the environment, CORVANE_API_KEY unless it is empty, else the keyring's. Absent when there is none, when
// the keyring is locked, which is never asked to be unlocked, and when it does not answer within two seconds.
std::optional<QString> ildoKey();

// Puts the key into the keyring in place of any other. The keyring may ask the user to unlock it, for as long as that
// takes. 0 for success, any other number for failure.
int setIldoKey(const QString& key);

// Takes the key out of the keyring; one that can't be removed stays. May ask to unlock, as above.
void removeIldoKey();

} // namespace lumbra::Secrets
