// A tool tip for the control or item that holds it. It is made only while it shows, so that a row or a tile can have
// one at no cost.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Item {
    id: hint

    property string text
    property Item control: parent
    readonly property var watched: control // may be any item, and tells more if it is a control
    property bool muted: false // while something else is open here, which the tip would lie over
    // A control tells of its pointer and its focus itself; a plain item is watched.
    readonly property bool near: (watched?.hovered ?? pointer.hovered) || (watched?.visualFocus ?? false)
    readonly property bool pressed: watched?.down ?? false
    property bool used: false // whoever has pressed it knows what it does
    readonly property bool wanted: text !== "" && control.enabled && control.visible && near && !used && !muted

    anchors.fill: parent
    onPressedChanged: if (pressed) used = true
    onNearChanged: if (!near) used = false
    onWantedChanged: wanted ? delay.restart() : delay.stop()

    HoverHandler {
        id: pointer
        enabled: hint.watched?.hovered === undefined
    }
    Timer {
        id: delay
        interval: Theme.hintDelay
    }
    Loader {
        active: hint.wanted && !delay.running
        sourceComponent: ToolTip {
            objectName: "toolTip"
            parent: hint
            text: hint.text
            visible: true
        }
    }
}
