// A pill that switches a filter: its label, and a count where there is one. A dim chip can still be chosen.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

T.RadioButton {
    id: chip

    property alias label: chip.text
    property string count
    property bool on: false
    property bool dim: false
    property string hint

    readonly property color ink: on ? Theme.amberInk : hovered ? Theme.text : Theme.textSoft

    implicitWidth: row.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.chipHeight
    leftPadding: Theme.controlPadding
    rightPadding: Theme.controlPadding
    opacity: (dim && !on) || !enabled ? Theme.dim : 1
    // The one that holds the chips decides which of them is on, and a second click changes nothing.
    autoExclusive: false
    checked: on
    onCheckedChanged: if (checked !== on) checked = Qt.binding(() => on)
    indicator: null
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.description: count
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Behavior on opacity { EaseNumber {} }

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.grid + 2

            Label {
                style: Label.Fact
                text: chip.text
                color: chip.ink
                font.weight: chip.on ? Theme.semibold : Theme.regular
                Accessible.ignored: true
            }
            Label {
                visible: text !== ""
                style: Label.Fact
                tabular: true
                text: chip.count
                color: chip.ink
                opacity: Theme.beside
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: height / 2
        color: chip.on ? (chip.down ? Theme.amberPress : chip.hovered ? Theme.amberHover : Theme.amber)
             : chip.down ? Theme.controlPress : chip.hovered ? Theme.controlHover : Theme.control
        border.width: Theme.highContrast && !chip.on ? 1 / Screen.devicePixelRatio : 0
        border.color: Theme.edge
        Behavior on color { EaseColor {} }
    }

    FocusRing { shown: chip.visualFocus; apart: chip.on; surfaceRadius: chip.height / 2 }
    Hint { text: chip.hint; control: chip }
}
