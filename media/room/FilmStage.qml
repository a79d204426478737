// The stage for a film that the player shows. A click plays and pauses; a film that stands at its beginning says so.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: stage

    required property ScreeningRoom room

    readonly property PlayerEngine engine: room.engine
    readonly property real beginning: 0.05 // seconds
    readonly property int signSize: 88

    // Next to nothing, yet drawn: a player whose surface is not drawn waits for it with each picture.
    readonly property real unseen: 0.001

    Accessible.role: Accessible.Graphic
    Accessible.name: room.name

    StagePicture {
        anchors.fill: parent
        visible: !sight.isItself && stage.room.open
        poster: stage.room.poster
    }
    VideoSurface {
        anchors.fill: parent
        player: stage.engine
        opacity: sight.isOfFileBefore ? stage.unseen : 1
        holds: !stage.room.open
    }
    FilmSight {
        id: sight
        player: stage.engine
    }
    MouseArea {
        objectName: "film"
        anchors.fill: parent
        onClicked: stage.engine.toggle()
    }
    Rectangle {
        objectName: "playSign"
        anchors.centerIn: parent
        width: stage.signSize
        height: width
        radius: width / 2
        color: Theme.badgeBed
        visible: !stage.engine.isPlaying && stage.engine.time < stage.beginning && sight.isItself

        Symbol {
            anchors.centerIn: parent
            name: "play.fill"
            size: Theme.sizeSymbolEmpty
            color: Theme.textOnBadge
        }
    }
}
