// A folder as a tile: its newest pictures as a fan that opens a little under the pointer, how many files it holds, and
// its name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: tile

    required property var cell // a PageCell
    required property TileMetrics metrics

    readonly property bool hovering: hover.hovered
    readonly property real fanShare: 0.68 // of the well: the lower cards stand out at either side

    signal opened()

    implicitWidth: metrics.width
    implicitHeight: metrics.height(cell.caption !== "")

    Accessible.role: Accessible.Button
    Accessible.name: cell.name
    Accessible.description: cell.count ? qsTr("%1 files").arg(cell.count) : qsTr("Empty")
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
        Loader {
            anchors.centerIn: parent
            sourceComponent: tile.cell.newest.length > 0 ? filled : plain
        }
        Badge {
            anchors { right: parent.right; bottom: parent.bottom; margins: Theme.grid + 2 }
            visible: tile.cell.count > 0
            text: tile.cell.count
        }
    }

    Component {
        id: filled
        Fan {
            width: Math.round(well.width * tile.fanShare)
            height: Math.round(well.height * tile.fanShare)
            assets: tile.cell.newest
            spread: tile.hovering ? 1.25 : 1
        }
    }
    Component {
        id: plain
        Column {
            spacing: Theme.grid
            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "folder"
                size: tile.metrics.size * 0.2
                color: Theme.textFaint
            }
            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: tile.cell.count === 0
                style: Label.Fact
                text: qsTr("Empty")
                color: Theme.textFaint
            }
        }
    }

    TileText {
        id: lines
        x: Theme.tileMargin
        y: tile.metrics.nameTop
        width: tile.metrics.wellWidth
        nameSymbol: "folder.fill"
        name: tile.cell.name
    }

    PressArea { onClicked: tile.opened() }
    TileHint { tile: tile; text: lines.elided ? tile.cell.name : "" }
}
