// The stage for a sound: its name under a sign that breathes while it plays.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: stage

    required property ScreeningRoom room

    readonly property real deepest: 1.06 // of a breath

    Accessible.role: Accessible.Graphic
    Accessible.name: room.name

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.pageMargin, 560)
        spacing: Theme.blockGap

        Rectangle {
            id: circle
            objectName: "circle"
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.round(Math.max(96, Math.min(168, 0.4 * stage.height)))
            height: width
            radius: width / 2
            color: Theme.amberSoft
            border.width: 1
            border.color: Theme.amberSoft

            Symbol {
                anchors.centerIn: parent
                name: "waveform"
                size: Math.round(0.42 * circle.width)
                color: Theme.amber
            }
            SequentialAnimation on scale {
                id: breath
                objectName: "breath"
                running: stage.room.engine.isPlaying && !Theme.reducedMotion && stage.visible
                loops: Animation.Infinite
                onStopped: rest.restart()

                NumberAnimation {
                    to: stage.deepest
                    duration: Theme.pulse
                    easing.type: Theme.easeInOut
                }
                NumberAnimation {
                    to: 1
                    duration: Theme.pulse
                    easing.type: Theme.easeInOut
                }
            }
            EaseNumber {
                id: rest
                target: circle
                property: "scale"
                to: 1
            }
        }
        Label {
            width: parent.width
            style: Label.PageTitle
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            text: stage.room.name
            Accessible.ignored: true
        }
    }
}
