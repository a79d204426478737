// A field to find something: a lens, a clear button, and Escape empties it before anything else happens.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

TextField {
    id: control

    symbol: "magnifyingglass"
    clearable: true

    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape && text !== ""
    Keys.onEscapePressed: event => {
        event.accepted = text !== ""
        clear()
    }
}
