// Draws a room that is not open, for a few frames and unseen: whatever is loaded and compiled for its first drawing is
// there when a film is to be shown.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Media

Loader {
    id: rehearsal

    required property RoomDoor door

    readonly property int frames: 3

    active: door.rehearsal !== null
    sourceComponent: ScreeningRoomView {
        room: rehearsal.door.rehearsal
        rehearses: true

        FrameAnimation {
            running: true
            onTriggered: if (currentFrame > rehearsal.frames) Qt.callLater(rehearsal.door.rehearsed)
        }
    }
}
