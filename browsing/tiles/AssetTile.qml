// A file as a tile: its picture whole in a well over its own backdrop, its name, and the project on pages across
// projects. Selected, it has a ring in the tile's margin. A film is skimmed by the pointer that moves across it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look
import Lumbra.Media

Item {
    id: tile

    required property var cell // a PageCell
    required property TileMetrics metrics

    readonly property bool hovering: hover.hovered
    property bool touched: false // by the pointer, at some time: only then is made what it alone needs

    signal clicked(modifiers: int)
    signal opened()
    signal starToggled()

    implicitWidth: metrics.width
    implicitHeight: metrics.height(cell.caption !== "")

    Accessible.role: Accessible.ListItem
    Accessible.name: cell.name
    Accessible.description: cell.facts
    Accessible.selectable: true
    Accessible.selected: cell.selected
    Accessible.onPressAction: clicked(Qt.NoModifier)

    HoverHandler {
        id: hover
        onHoveredChanged: tile.touched = true
    }

    Rectangle {
        id: well
        x: Theme.tileMargin
        y: Theme.tileMargin
        width: tile.metrics.wellWidth
        height: tile.metrics.wellHeight
        radius: Theme.radiusPicture
        color: thumbnail.covering ? Theme.clear : Theme.well // nothing is drawn that nobody sees

        ThumbnailView {
            id: thumbnail
            anchors.fill: parent
            asset: tile.cell.asset
            size: tile.metrics.wellWidth
            backdrop: true
            cornerRadius: Theme.radiusPicture
        }

        Loader {
            id: touch
            anchors.fill: parent
            active: tile.touched
            sourceComponent: pointed
        }

        Loader {
            id: duration
            anchors { right: parent.right; bottom: parent.bottom; margins: Theme.grid + 2 }
            active: tile.cell.hasLength
            sourceComponent: length
        }
    }

    Loader {
        anchors.fill: well
        anchors.margins: -Theme.ringGap - Theme.ring
        sourceComponent: tile.cell.selected ? ring : null
    }

    TileText {
        id: lines
        x: Theme.tileMargin
        y: tile.metrics.nameTop
        width: tile.metrics.wellWidth
        name: tile.cell.name
        caption: tile.cell.caption
    }

    PressArea {
        onClicked: mouse => tile.clicked(mouse.modifiers)
        onDoubleClicked: tile.opened()
        onPulled: FileDrag.start(tile.cell.asset, this, Theme)
    }
    Loader {
        anchors.fill: parent
        sourceComponent: tile.touched || tile.cell.starred ? marks : null
    }

    // What shows on the picture since the pointer has come. A film keeps its frames as long as it has its tile.
    Component {
        id: pointed

        Item {
            readonly property Skimmer skimmer: skim.item?.skimmer ?? null

            Loader {
                id: skim
                anchors.fill: parent
                active: tile.cell.isVideo
                sourceComponent: film
            }
            HoverLight { shown: tile.hovering }
        }
    }
    Component {
        id: film

        FramePicture {
            objectName: "skim"

            readonly property Skimmer skimmer: Skimmer {
                asset: tile.cell.asset
                hovering: tile.hovering
                x: hover.point.position.x
                size: tile.metrics.size
            }

            visible: skimmer.running
            image: skimmer.frame
            cornerRadius: Theme.radiusPicture
        }
    }
    // The length, or where in it the pointer stands.
    Component {
        id: length

        Badge {
            objectName: "length"

            readonly property Skimmer skimmer: touch.item?.skimmer ?? null

            visible: text !== ""
            text: skimmer?.running ? skimmer.time : duration.text

            TileDuration {
                id: duration
                asset: tile.cell.asset
            }
        }
    }
    // What lies above where the tile is pressed.
    Component {
        id: marks

        Item {
            // Below the star, which has a tip of its own.
            TileHint { target: tile; text: lines.elided ? tile.cell.name : "" }
            // A button under the pointer, otherwise a mark that lets clicks through to the tile.
            StarButton {
                anchors { top: parent.top; right: parent.right; margins: Theme.tileMargin + Theme.grid + 2 }
                enabled: tile.hovering
                starred: tile.cell.starred
                near: tile.hovering
                onClicked: tile.starToggled()
            }
        }
    }
    Component {
        id: ring

        Rectangle {
            radius: Theme.radiusPicture + Theme.ringGap + Theme.ring
            color: Theme.clear
            border { width: Theme.ring; color: Theme.amber }
        }
    }
}
