// A menu for the item that holds it: opens under the pointer on a right click, and at the item on the Menu key or
// Shift+F10 where the item has the focus. It is made when it is first needed and forgotten when it has closed.
//
//     ContextMenu { menu: Component { Menu { MenuItem { text: "Rename" } } } }
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window

Item {
    id: context

    property Component menu
    readonly property bool opened: loader.item?.visible ?? false

    signal aboutToOpen()

    function openAt(x: real, y: real) {
        make().popup(context, x, y)
    }

    // Hangs below something that ends at `bottom`, or stands on its `top` where there is no room below: what opened the
    // menu stays in sight, and the pointer does not come to lie on an entry.
    function openBelow(x: real, top: real, bottom: real) {
        const menu = make()
        const end = context.mapToItem(null, 0, bottom + menu.implicitHeight).y + menu.bottomMargin
        const fits = end <= context.Window.height || context.mapToItem(null, 0, top - menu.implicitHeight).y < 0
        menu.popup(context, x, fits ? bottom : top - menu.implicitHeight)
    }

    function make(): Menu {
        aboutToOpen()
        loader.active = false
        loader.active = true
        const made = loader.item as Menu
        made.closed.connect(() => { if (loader) loader.active = false }) // not when all of this is going
        return made
    }

    anchors.fill: parent

    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.WithinBounds
        onPressedChanged: if (pressed) context.openAt(point.position.x, point.position.y)
    }
    Connections {
        target: context.parent.Keys
        function onPressed(event: var) {
            if (event.key !== Qt.Key_Menu && !(event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
                return
            event.accepted = true
            context.openBelow(Theme.rowInset, 0, context.height)
        }
    }
    Loader {
        id: loader
        active: false
        sourceComponent: context.menu
    }
}
