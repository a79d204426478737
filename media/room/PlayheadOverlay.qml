// The line over the track at the point that the player has reached.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Item {
    id: overlay

    required property Scrubber scrubber

    readonly property int thickness: 2

    // Dark beside it, so that it is seen on a bright frame too.
    Rectangle {
        objectName: "playhead"
        // On whole pixels it stays sharp; its middle is the point.
        x: Math.round((overlay.scrubber.playhead - width / 2) * Screen.devicePixelRatio) / Screen.devicePixelRatio
        y: -overlay.thickness - 1
        width: overlay.thickness + 2
        height: parent.height - 2 * y
        radius: width / 2
        color: Theme.badgeBed

        Rectangle {
            anchors.fill: parent
            anchors.margins: 1
            radius: width / 2
            color: overlay.scrubber.dragging ? Theme.amber : Theme.knob
            Behavior on color { EaseColor {} }
        }
    }
}
