// The one context menu of all tiles, filled anew for the tile that it opens at.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: menu

    required property Browser browser

    function openFor(cell: var, tile: Item, x: real, y: real) {
        loader.active = false
        loader.entries = browser.menu(cell)
        if (loader.entries.length === 0)
            return
        loader.active = true
        loader.item.popup(tile, x, y)
    }

    Loader {
        id: loader
        property var entries: []
        active: false
        sourceComponent: EntriesMenu {
            entries: loader.entries
            onClosed: if (loader) loader.active = false
        }
    }
}
