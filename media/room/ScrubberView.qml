// The line along a film or a sound: its track, the playhead, and over the pointer the frame that is there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    required property ScreeningRoom room

    readonly property alias dragging: scrubber.dragging
    readonly property alias controller: scrubber

    // As assistive technology reads a slider.
    readonly property double value: room.engine.time
    readonly property double minimumValue: 0
    readonly property double maximumValue: room.engine.duration
    readonly property double stepSize: 5 // seconds

    implicitHeight: 46
    activeFocusOnTab: true

    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Position")
    Accessible.description: Transport.timecode(value, false) + " / " + Transport.timecode(maximumValue, false)
    Accessible.focusable: true
    Accessible.onIncreaseAction: room.engine.seek(value + stepSize, true)
    Accessible.onDecreaseAction: room.engine.seek(value - stepSize, true)

    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
            return // the room moves the player by its other keys
        event.accepted = true
        room.engine.seek(event.key === Qt.Key_Home ? 0 : maximumValue, true)
    }

    Scrubber {
        id: scrubber
        asset: view.room.asset
        engine: view.room.engine
        width: view.width
    }
    Track {
        objectName: "track"
        anchors.fill: parent
        scrubber: scrubber
        bed: scrubber.isVideo ? Theme.trackVideo : Theme.trackAudio
        barColor: Theme.bars
        radius: Theme.radiusRow
    }
    Rectangle {
        visible: scrubber.hovered && !scrubber.dragging
        x: Math.round(scrubber.hoverX - width / 2)
        width: 1
        height: parent.height
        color: Theme.textFaint
    }
    PlayheadOverlay {
        anchors.fill: parent
        scrubber: scrubber
    }
    FocusRing {
        shown: view.activeFocus
        surfaceRadius: Theme.radiusRow
        outset: Theme.grid
    }
    MouseArea {
        id: pointer
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => scrubber.drag(mouse.x)
        onPositionChanged: mouse => {
            if (pressed) {
                scrubber.drag(mouse.x)
                tellRoom(mouse)
            }
            if (containsMouse)
                scrubber.hover(mouse.x)
        }
        onReleased: mouse => {
            scrubber.release(mouse.x)
            tellRoom(mouse)
        }
        onCanceled: scrubber.release(scrubber.playhead)
        onEntered: scrubber.hover(mouseX)
        onExited: scrubber.leave()

        // It does not hear of a pointer that is held here, and would hide what is in use.
        function tellRoom(mouse: MouseEvent) { view.room.pointerAt(mapToItem(null, mouse.x, mouse.y)) }
    }

    Surface {
        id: card
        objectName: "card"

        readonly property int inset: Theme.grid
        readonly property int gap: Theme.pageMargin + Theme.grid + 2 // clear of the capsule's edge

        visible: scrubber.hovered && scrubber.isVideo
        x: scrubber.cardLeft
        y: -scrubber.cardRise
        width: scrubber.cardWidth
        height: scrubber.cardRise - gap
        radius: Theme.radiusCard

        FramePicture {
            id: frame
            objectName: "preview"
            x: card.inset
            y: card.inset
            width: card.width - 2 * card.inset
            height: scrubber.frameHeight * width / card.width
            cornerRadius: card.radius - card.inset
            image: scrubber.cardFrame
        }
        Label {
            objectName: "hoverTime"
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((frame.y + frame.height + card.height - height) / 2)
            style: Label.Fact
            tabular: true
            color: Theme.text
            text: Transport.timecode(scrubber.hoverTime, false)
        }
    }
}
