// A folder as a tile: its newest pictures as a fan that opens a little under the pointer, how many files it holds, and
// its name. Files that are dropped on it are moved there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

PlaceTile {
    id: tile

    readonly property bool targeted: area.containsDrag // a drag of files is over it
    signal filesDropped(urls: var)

    readonly property real fanShare: 0.64 // of the well: the lower cards stand out at either side

    Accessible.name: cell.name
    Accessible.description: cell.count === 0 ? qsTr("Empty") : cell.count === 1 ? qsTr("1 file")
                                                             : qsTr("%1 files").arg(cell.count)

    hint: lines.elided ? cell.name : ""
    lines.name: cell.name
    lines.nameInset: mark.width + Theme.grid + 2

    Symbol {
        id: mark
        parent: tile.lines
        y: Math.round((Theme.lineBody - height) / 2)
        name: "folder.fill"
        size: Theme.sizeSymbolSmall
        color: Theme.textSoft
    }

    Loader {
        anchors.centerIn: parent
        sourceComponent: tile.cell.newest.length > 0 ? filled : plain
    }
    Badge {
        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.grid + 2 }
        visible: tile.cell.count > 0
        text: tile.cell.count
    }

    FileDropArea {
        id: area
        anchors.fill: parent
        onFilesDropped: urls => tile.filesDropped(urls)
    }
    Loader {
        anchors.fill: parent
        sourceComponent: tile.targeted ? landing : null
    }

    Component {
        id: landing
        Rectangle {
            radius: Theme.radiusPicture
            color: Theme.scrim

            Bed {
                anchors.fill: parent
                radius: parent.radius
                targeted: true
            }
            // Above the middle: what is dragged hangs below the pointer.
            Label {
                objectName: "moveHere"
                anchors.horizontalCenter: parent.horizontalCenter
                y: Math.round((parent.height / 2 - height) / 2)
                style: Label.Section
                text: qsTr("Move here")
            }
        }
    }
    Component {
        id: filled
        Fan {
            width: Math.round(tile.metrics.wellWidth * tile.fanShare)
            height: Math.round(tile.metrics.wellHeight * tile.fanShare)
            assets: tile.cell.newest
            spread: tile.hovering ? 1.25 : 1
        }
    }
    // Also of a folder whose files have no pictures: those are counted, and it is not called empty.
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
}
