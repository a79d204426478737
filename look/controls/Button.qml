// A button with a text, and a symbol if it wants one. `kind` says what it means: the default of its sheet, an ordinary
// one, or one that destroys something.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Lumbra.Look

T.Button {
    id: control

    enum Kind { Normal, Default, Destructive, Plain }

    property int kind: Button.Normal
    property string symbol
    property string hint

    readonly property color ink: kind === Button.Default ? Theme.amberInk
        : kind === Button.Destructive ? Theme.danger
        : kind === Button.Plain ? Theme.amber : Theme.text

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, Theme.controlHeight)
    implicitHeight: Theme.controlHeight
    leftPadding: kind === Button.Plain ? Theme.gap : Theme.controlPadding
    rightPadding: leftPadding
    spacing: Theme.grid + 2
    opacity: enabled ? 1 : Theme.dim
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: hint
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        id: content

        readonly property real symbolRoom: control.symbol ? Theme.sizeSymbol + row.spacing : 0

        implicitWidth: Math.ceil(label.implicitWidth) + symbolRoom
        implicitHeight: label.implicitHeight

        Row {
            id: row
            anchors.centerIn: parent
            spacing: control.spacing

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.symbol !== ""
                name: control.symbol
                size: Theme.sizeSymbol
                color: control.ink
            }
            Label {
                id: label
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, content.width - content.symbolRoom)
                text: control.text
                color: control.ink
                font.weight: control.kind === Button.Default ? Theme.semibold : Theme.regular
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Theme.radiusControl
        color: {
            if (control.kind === Button.Default)
                return control.down ? Theme.amberPress : control.hovered ? Theme.amberHover : Theme.amber
            if (control.kind === Button.Plain)
                return control.down ? Theme.press : control.hovered ? Theme.hover : Theme.clear
            if (control.kind === Button.Destructive)
                return control.down ? Theme.dangerPress : control.hovered ? Theme.dangerHover : Theme.dangerSoft
            return control.down ? Theme.controlPress : control.hovered ? Theme.controlHover : Theme.control
        }
        border.width: Theme.highContrast && control.kind !== Button.Plain ? 1 / Screen.devicePixelRatio : 0
        border.color: Theme.edge
        Behavior on color { EaseColor {} }
    }

    FocusRing { shown: control.visualFocus; apart: control.kind === Button.Default }
    Hint { text: control.hint; control: control }
}
