// A folder's older files in the feed, collapsed into one tile: the newest of them, how many there are, and the way to
// their folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: tile

    required property var cell // a PageCell
    required property TileMetrics metrics

    readonly property string help: "Open " + cell.caption
    readonly property bool hovering: hover.hovered
    readonly property real fanShare: 0.9

    signal opened()

    implicitWidth: metrics.width
    implicitHeight: metrics.height(true)

    Accessible.role: Accessible.Button
    Accessible.name: help
    Accessible.onPressAction: opened()

    HoverHandler { id: hover }

    Rectangle {
        id: well
        x: Theme.tileMargin
        y: Theme.tileMargin
        width: tile.metrics.wellWidth
        height: tile.metrics.wellHeight
        radius: Theme.radiusPicture
        color: Theme.white(0.03)

        HoverLight { shown: tile.hovering }
        Fan {
            anchors.centerIn: parent
            width: Math.round(well.width * tile.fanShare)
            height: Math.round(well.height * tile.fanShare)
            assets: [tile.cell.asset]
        }
        Badge {
            anchors.centerIn: parent
            symbol: "plus"
            text: tile.cell.count
        }
    }

    TileText {
        x: Theme.tileMargin
        y: tile.metrics.nameTop
        width: tile.metrics.wellWidth
        name: tile.cell.caption
        caption: qsTr("more in this folder")
    }

    PressArea { onClicked: tile.opened() }
    TileHint { tile: tile; text: tile.help }
}
