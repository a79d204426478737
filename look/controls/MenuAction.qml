// What an entry of the menu bar does. Its shortcut works without the menu, but not while a sheet asks for something:
// entries of a closed menu lie behind nothing, so that Qt lets them through.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick.Templates as T
import Lumbra.Look

T.Action {
    property bool possible: true

    enabled: possible && Sheets.shown === 0
}
