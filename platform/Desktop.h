// What the desktop does for us with the user's files: opens them, shows where they are, hands them on, opens a terminal
// there.
//
// Nothing here waits for the other program. Main thread only, with a QGuiApplication.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QList>

namespace lumbra::Desktop {

// Opens each file or folder with the program that the desktop has for it.
void open(const QList<Location>& locations);

// Shows the files selected in the desktop's file manager; opens their folders where it can't.
void reveal(const QList<Location>& locations);

// Lets the user choose the program that opens the file; where the desktop has no such question, the usual one does.
void openWith(const Location& file);

// Begins a letter with the files attached, in the program that the desktop has for mail.
void sendByMail(const QList<Location>& files);

// Opens the user's terminal in the folder: $TERMINAL, else x-terminal-emulator, else xdg-terminal-exec. False when none
// of them could be started.
bool openTerminal(const Location& folder);

} // namespace lumbra::Desktop
