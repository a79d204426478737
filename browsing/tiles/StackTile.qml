// A folder's older files in the feed, collapsed into one tile: the newest of them, how many there are, and the way to
// their folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

PlaceTile {
    id: tile

    readonly property string help: "Open " + cell.caption
    readonly property real fanShare: 0.9

    Accessible.name: help
    Accessible.description: cell.count + " " + lines.caption

    hint: help
    captioned: true
    lines.name: cell.caption
    lines.caption: qsTr("more in this folder")
    lines.captionElide: Text.ElideRight

    Fan {
        anchors.centerIn: parent
        width: Math.round(tile.metrics.wellWidth * tile.fanShare)
        height: Math.round(tile.metrics.wellHeight * tile.fanShare)
        assets: [tile.cell.asset]
    }
    Badge {
        anchors.centerIn: parent
        symbol: "plus"
        text: tile.cell.count
    }
}
