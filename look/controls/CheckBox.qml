// A box to tick, with its text.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Lumbra.Look

T.CheckBox {
    id: control

    property string hint

    implicitWidth: implicitIndicatorWidth + spacing + implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    spacing: Theme.gap
    opacity: enabled ? 1 : Theme.dim
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.description: hint
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: tick()
    Accessible.onToggleAction: tick()
    Keys.onReturnPressed: tick()
    Keys.onEnterPressed: tick()

    // As a click does.
    function tick() {
        toggle()
        toggled()
        clicked()
    }

    indicator: Rectangle {
        x: control.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: Theme.sizeSymbol
        implicitHeight: Theme.sizeSymbol
        radius: Theme.radiusBadge
        color: control.checked ? Theme.amber : control.down ? Theme.controlPress
             : control.hovered ? Theme.controlHover : Theme.control
        border.width: control.checked ? 0 : 1 / Screen.devicePixelRatio
        border.color: Theme.edge
        Behavior on color { EaseColor {} }

        Symbol {
            anchors.centerIn: parent
            visible: control.checked
            name: "checkmark"
            size: Theme.sizeSymbolSmall
            color: Theme.amberInk
        }
        FocusRing { shown: control.visualFocus; apart: control.checked; surfaceRadius: Theme.radiusBadge }
    }

    contentItem: Label {
        leftPadding: control.indicator.width + control.spacing
        text: control.text
        Accessible.ignored: true
    }

    Hint { text: control.hint; control: control }
}
