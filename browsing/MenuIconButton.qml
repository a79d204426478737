// A button that is only a symbol and opens a menu of entries, which are asked for when it opens.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

IconButton {
    id: button

    property var entries: () => []

    hintMuted: context.opened
    onClicked: context.openBelow(0, -Theme.grid, height + Theme.grid)

    ContextMenu {
        id: context
        // No binding: a menu that is made anew while it is read loses the entry that the keys are at.
        menu: Component {
            EntriesMenu {
                id: filled
                Component.onCompleted: filled.entries = button.entries()
            }
        }
    }
}
