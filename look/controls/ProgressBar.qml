// How far something is: amber along a thin track. Without a known end (`indeterminate`) a piece of it wanders.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.ProgressBar {
    id: control

    implicitWidth: 160
    implicitHeight: Theme.grid

    Accessible.role: Accessible.ProgressBar

    background: Rectangle {
        radius: height / 2
        color: Theme.press
    }
    contentItem: Item {
        clip: true

        Rectangle {
            readonly property real piece: 0.3

            x: control.indeterminate ? (parent.width + width) * wander.place - width : 0
            width: parent.width * (control.indeterminate ? piece : control.visualPosition)
            height: parent.height
            radius: height / 2
            color: Theme.amber
        }
        NumberAnimation {
            id: wander
            property real place: 0
            target: wander
            property: "place"
            from: 0
            to: 1
            duration: Theme.turn
            loops: Animation.Infinite
            running: control.indeterminate && control.visible
        }
    }
}
