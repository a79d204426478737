// A button with a menu of choices, the present one marked.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Button {
    id: button

    property var choices: [] // each with a value and a label
    property var value
    property string label
    property bool onlySymbol: false // where there is no room for the label

    signal chosen(value: var)

    text: onlySymbol ? "" : label
    hint: onlySymbol ? label : ""
    implicitHeight: Theme.chipHeight
    onClicked: menu.popup(button, 0, button.height + Theme.grid)

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label

    Menu {
        id: menu

        Repeater {
            model: button.choices

            MenuItem {
                required property var modelData
                text: modelData.label
                checkable: true
                checked: button.value === modelData.value
                onTriggered: {
                    checked = Qt.binding(() => button.value === modelData.value)
                    button.chosen(modelData.value)
                }
            }
        }
    }
}
