// What the user's menus do with files beyond the library: open them, copy them, and the operations of Library that
// first ask for files or a place in a panel.
//
// The library may be gone when a panel answers; then nothing is done. Main thread only, with a QGuiApplication.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>

#include <functional>
#include <optional>

namespace lumbra {

class Library;
class Panels;

namespace Actions {

// The window's panels, or none: then what needs a panel does nothing. They must outlive their use.
void usePanels(Panels* panels);

// Opens each with the program that the desktop has for it.
void open(const QList<Location>& urls);

// Copies the files for other programs to paste, and says so in a toast once they can be pasted. Nothing for an empty
// list.
void copy(const QList<Location>& urls, Library* library);

// Copies the paths as text, a line each; an empty list leaves empty text.
void copyPaths(const QList<Location>& urls);

// Asks for files and folders and brings them into the folder.
void importFiles(const Location& folder, Library* library);

// Asks for one folder, which may be made in the panel. `chosen` is called with none when the user cancels. The message
// says what the folder is for.
void chooseFolder(const QString& prompt, const std::optional<Location>& start,
                  std::function<void(std::optional<Location>)> chosen, const QString& message = {});

// Copies one file to where the user says, in place of what is there; several into a folder that the user chooses.
void exportFiles(const QList<Location>& urls, Library* library);

} // namespace Actions

} // namespace lumbra
