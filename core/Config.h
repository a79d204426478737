// Which folder the library is, by one rule for the application and the command.
//
// Nothing is kept: every call sees the present environment and the present file. Reading never fails. Safe on any
// thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QJsonObject>

namespace lumbra::LumbraConfig {

// The configuration file: "lumbra/config.json" in the folder that XDG_CONFIG_HOME names, taken as it is (an empty one
// makes the location relative to the working directory), otherwise in ".config" in the home folder.
Location file();

// The whole configuration, of which `library` is one key; empty when the file can't be read.
QJsonObject contents();

// What is offered to a user who has not chosen yet: "Lumbra" in the home folder.
Location suggestedLibrary();

// True if the user has ever chosen a library: LUMBRA_LIBRARY is set, even to nothing, or the file exists, whatever it
// holds.
bool isConfigured();

// The library's root: LUMBRA_LIBRARY unless it is empty, else `library` of the file unless it is empty or can be no
// path, else the suggested one. Not canonical, and it need not exist.
Location library();

// Records the root in the file, whose other keys are kept, and makes the root's folder. Throws CoreError. If only
// making the folder failed, the file already names it.
void setLibrary(const Location& root);

} // namespace lumbra::LumbraConfig
