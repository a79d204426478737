// What plays a film or a sound: its line with the track over one row of controls. Where the whole row finds no room,
// what has a key of its own is left out.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look
import Lumbra.Media

Item {
    id: capsule

    required property ScreeningRoom room

    readonly property PlayerEngine engine: room.engine
    readonly property bool isVideo: room.kind === "video"

    // What the wide form takes, on view or not, with room for the badge: no form changes while a film is shuttled.
    readonly property real wideWidth: {
        const kept = [play, timecode, badge, speed, loop, mute]
        const left = [back, ahead, volume]
        const film = isVideo ? [previousFrame, nextFrame, pip, fullScreen] : []
        const margins = 3 * Theme.grid
        return [...kept, ...left, ...film].reduce((sum, control) => sum + control.implicitWidth + row.spacing, margins)
    }
    readonly property bool wide: wideWidth <= row.width

    readonly property int margin: Theme.pageMargin
    readonly property int jump: 5 // seconds

    implicitWidth: room.capsuleWidth
    implicitHeight: row.y + row.height + Theme.gap + 2

    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Player")

    Surface {
        anchors.fill: parent
        radius: Theme.radiusCapsule
    }
    // What misses a control does not reach the film behind.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }

    // A menu goes with the control that it belongs to.
    Connections {
        target: capsule.room
        function onChromeChanged() { if (!capsule.room.chrome) speed.close() }
    }

    ScrubberView {
        id: scrubber
        objectName: "scrubber"
        x: capsule.margin
        y: capsule.margin
        width: parent.width - 2 * x
        room: capsule.room
    }

    RowLayout {
        id: row
        x: capsule.margin
        y: scrubber.y + scrubber.height + Theme.gap
        width: parent.width - 2 * x
        height: Theme.controlHeight + Theme.gap
        spacing: Theme.grid + 2

        IconButton {
            id: play
            objectName: "play"
            implicitWidth: row.height
            implicitHeight: row.height
            symbol: capsule.engine.isPlaying ? "pause.fill" : "play.fill"
            symbolSize: Theme.linePage
            ink: Theme.text
            text: capsule.engine.isPlaying ? qsTr("Pause") : qsTr("Play")
            hint: capsule.engine.isPlaying ? qsTr("Pause (Space)") : qsTr("Play (Space)")
            onClicked: capsule.engine.toggle()
        }
        IconButton {
            id: back
            objectName: "back"
            visible: capsule.wide
            symbol: "gobackward.5"
            symbolSize: Theme.lineSheet
            text: qsTr("Back 5 seconds")
            hint: qsTr("Back 5 seconds (←)")
            onClicked: capsule.engine.seek(capsule.engine.time - capsule.jump, true)
        }
        IconButton {
            id: ahead
            objectName: "ahead"
            visible: capsule.wide
            symbol: "goforward.5"
            symbolSize: Theme.lineSheet
            text: qsTr("Ahead 5 seconds")
            hint: qsTr("Ahead 5 seconds (→)")
            onClicked: capsule.engine.seek(capsule.engine.time + capsule.jump, true)
        }
        IconButton {
            id: previousFrame
            objectName: "previousFrame"
            visible: capsule.wide && capsule.isVideo
            symbol: "backward.frame.fill"
            symbolSize: Theme.lineBody
            text: qsTr("Previous frame")
            hint: qsTr("Previous frame (,)")
            onClicked: capsule.engine.step(-1)
        }
        IconButton {
            id: nextFrame
            objectName: "nextFrame"
            visible: capsule.wide && capsule.isVideo
            symbol: "forward.frame.fill"
            symbolSize: Theme.lineBody
            text: qsTr("Next frame")
            hint: qsTr("Next frame (.)")
            onClicked: capsule.engine.step(1)
        }
        TimecodeView {
            id: timecode
            objectName: "timecode"
            Layout.leftMargin: Theme.grid
            engine: capsule.engine
        }
        ShuttleBadge {
            id: badge
            objectName: "badge"
            Layout.leftMargin: Theme.grid
            engine: capsule.engine
        }
        Item { Layout.fillWidth: true }
        SpeedButton {
            id: speed
            objectName: "speed"
            engine: capsule.engine
        }
        IconButton {
            id: loop
            objectName: "loop"
            symbol: "repeat"
            symbolSize: Theme.lineBody
            ink: capsule.engine.loop ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
            text: capsule.engine.loop ? qsTr("Loop is on") : qsTr("Loop")
            Accessible.checkable: true
            Accessible.checked: capsule.engine.loop
            onClicked: capsule.engine.loop = !capsule.engine.loop
        }
        IconButton {
            id: mute
            objectName: "mute"
            symbol: Transport.volumeSymbol(capsule.engine.volume, capsule.engine.muted)
            symbolSize: Theme.lineBody
            text: qsTr("Mute")
            hint: qsTr("Mute (M)")
            Accessible.checkable: true
            Accessible.checked: capsule.engine.muted
            onClicked: capsule.engine.muted = !capsule.engine.muted
        }
        Slider {
            id: volume
            objectName: "volume"
            Layout.rightMargin: Theme.grid
            visible: capsule.wide
            implicitWidth: 92
            text: qsTr("Volume")
            from: 0
            to: 1
            value: capsule.engine.volume
            onMoved: {
                capsule.engine.volume = value
                // Which does not hear of a pointer that is held here, and would hide what is in use.
                capsule.room.pointerAt(handle.mapToItem(null, 0, 0))
            }
        }
        IconButton {
            id: pip
            objectName: "pip"
            visible: capsule.isVideo
            enabled: capsule.engine.pip !== null
            symbol: "pip.enter"
            symbolSize: Theme.lineSheet
            text: qsTr("Picture in picture")
            ink: capsule.engine.pip?.active ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
            Accessible.checkable: true
            Accessible.checked: capsule.engine.pip?.active ?? false
            onClicked: capsule.engine.pip.toggle()
        }
        IconButton {
            id: fullScreen
            objectName: "fullScreen"
            visible: capsule.isVideo
            symbol: "arrow.up.left.and.arrow.down.right"
            symbolSize: Theme.lineBody
            text: qsTr("Full screen")
            hint: qsTr("Full screen (F)")
            onClicked: capsule.room.toggleFullScreen()
        }
    }
}
