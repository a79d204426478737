// A value between two ends: amber up to the handle.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.Slider {
    id: control

    property string text // its name for assistive technology, and its tool tip

    readonly property int track: Theme.grid

    implicitWidth: 120
    implicitHeight: Theme.controlHeight
    padding: 0
    opacity: enabled ? 1 : Theme.dim
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    // By these names assistive technology asks for the ends.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    Accessible.role: Accessible.Slider
    Accessible.name: text
    Accessible.onIncreaseAction: increase()
    Accessible.onDecreaseAction: decrease()

    background: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: control.track
        radius: height / 2
        color: Theme.press

        Rectangle {
            width: control.handle.x + control.handle.width / 2
            height: parent.height
            radius: parent.radius
            color: Theme.amber
        }
    }

    handle: Rectangle {
        x: control.visualPosition * (control.availableWidth - width)
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: Theme.sizeSymbolSmall
        implicitHeight: Theme.sizeSymbolSmall
        radius: height / 2
        color: control.pressed ? Theme.amber : Theme.knob
        Behavior on color { EaseColor {} }

        FocusRing { shown: control.visualFocus; surfaceRadius: parent.radius }
    }

    Hint { text: control.text; control: control }
}
