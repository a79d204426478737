// A menu for the item that holds it: opens under the pointer on a right click, and at the item on the Menu key or
// Shift+F10 where the item has the focus. It is made when it is first needed and forgotten when it has closed.
//
//     ContextMenu { menu: Component { Menu { MenuItem { text: "Rename" } } } }
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Item {
    id: context

    property Component menu
    readonly property bool opened: loader.item?.visible ?? false

    signal aboutToOpen()

    function openAt(x: real, y: real) {
        aboutToOpen()
        loader.active = false
        loader.active = true
        loader.item.closed.connect(() => loader.active = false)
        loader.item.popup(context, x, y)
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
            context.openAt(Theme.rowInset, context.height)
        }
    }
    Loader {
        id: loader
        active: false
        sourceComponent: context.menu
    }
}
