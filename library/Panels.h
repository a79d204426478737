// The panels in which the user chooses files and folders, as the operations of the library ask for them. The window
// provides them.
//
// A panel answers later, with one call of `chosen`. Cancelled, the panels for files never answer, and that for a folder
// answers with none: some go on without one. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>

#include <functional>
#include <optional>

namespace lumbra {

class Panels {
public:
    virtual ~Panels() = default;

    // Existing files and folders, mixed, several at a time.
    virtual void openFiles(const QString& prompt, std::function<void(QList<Location>)> chosen) = 0;

    // One folder, which may be made in the panel. `prompt` is what the button says; `message`, which may be empty, says
    // above the list what the folder is for.
    virtual void chooseFolder(const QString& prompt, const QString& message, const std::optional<Location>& start,
                              std::function<void(std::optional<Location>)> chosen) = 0;

    // A path to write to. The panel has asked before it answers with one that exists.
    virtual void save(const QString& name, const Location& start, std::function<void(Location)> chosen) = 0;
};

} // namespace lumbra
