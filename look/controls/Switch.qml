// What is on or off, and takes effect at once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.Switch {
    id: control

    readonly property int travel: Theme.sizeSymbolSmall - 2

    implicitWidth: implicitIndicatorWidth + spacing + implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    spacing: Theme.gap
    opacity: enabled ? 1 : Theme.dim
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: turn()
    Accessible.onToggleAction: turn()
    Keys.onReturnPressed: turn()
    Keys.onEnterPressed: turn()

    // As a click does.
    function turn() {
        toggle()
        toggled()
        clicked()
    }

    indicator: Rectangle {
        x: control.width - width - control.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: implicitHeight + control.travel
        implicitHeight: Theme.lineFact + 2
        radius: height / 2
        color: control.checked ? (control.hovered ? Theme.amberHover : Theme.amber)
             : control.hovered ? Theme.thumbHover : Theme.thumb
        Behavior on color { EaseColor {} }

        Rectangle {
            readonly property int gap: 2

            x: gap + control.visualPosition * control.travel
            y: gap
            width: parent.height - 2 * gap
            height: width
            radius: height / 2
            color: control.checked ? Theme.amberInk : Theme.knob
            Behavior on x { enabled: !control.down; EaseNumber {} }
        }
        FocusRing { shown: control.visualFocus; apart: control.checked; surfaceRadius: parent.radius }
    }

    contentItem: Label {
        rightPadding: control.indicator.width + control.spacing
        text: control.text
        Accessible.ignored: true
    }
}
