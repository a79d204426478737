// How fast the player plays, and a menu of other speeds.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Button {
    id: button

    required property PlayerEngine engine

    function close() { menu.close() }

    implicitWidth: 56 // of the longest label, so that nothing moves beside it
    leftPadding: Theme.grid
    text: Transport.speedText(engine.speed)
    hint: menu.visible ? "" : qsTr("Playback speed")
    onClicked: menu.popup(button, 0, -menu.implicitHeight - Theme.gap)

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: qsTr("Playback speed")
    Accessible.description: text

    Menu {
        id: menu
        objectName: "speeds"

        Repeater {
            model: Transport.speeds

            MenuItem {
                required property double modelData

                objectName: "speed" + modelData
                text: Transport.speedText(modelData)
                checkable: true
                checked: button.engine.speed === modelData
                onTriggered: {
                    button.engine.speed = modelData
                    // The click has set it by itself, and undone the binding.
                    checked = Qt.binding(() => button.engine.speed === modelData)
                }
            }
        }
    }
}
