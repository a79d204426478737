// One row of the page: tiles in their columns, or the button that reveals more of a section.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: view

    required property var row // a PageRow
    required property Browser browser
    required property TileMetrics metrics

    readonly property PageRows rows: browser.rows
    readonly property bool isButton: row.more !== ""
    property bool made: false // with all that it had to show at first

    // What the tiles show. Another number of columns gives every tile another file, all of them at once would take
    // longer than a frame: while the zoom changes, a row is behind until the page lets it catch up.
    property var shown: row
    property bool behind: false

    function catchUp() {
        behind = false
        shown = row
    }

    // The first tile that is selected, or null.
    function selectedTile(): Item {
        for (let i = 0; i < tiles.count; ++i)
            if (tiles.itemAt(i).cell.selected)
                return tiles.itemAt(i)
        return null
    }

    signal menuWanted(cell: var, tile: Item, x: real, y: real)

    onRowChanged: made && rows.resizing ? behind = true : catchUp()

    // Rows that are kept to be used again stay where they last lay: neither the Tab key nor a screen reader may find them.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true
    Component.onCompleted: {
        made = true
        catchUp()
    }

    implicitHeight: (isButton ? Theme.controlHeight : metrics.height(row.captioned)) + row.gap

    Repeater {
        id: tiles

        // A model of its own for the columns: when one comes or goes, the tiles in the others stay.
        model: view.rows.slots

        Loader {
            id: place

            required property int index
            readonly property var cell: view.shown.cell(index)

            // A tile in a column that has come since, when there is time: while tiles shrink each row gets one, and all
            // of them at once would take longer than a frame.
            property bool late: view.made
            asynchronous: late
            onLoaded: late = false

            x: Math.round(view.rows.firstTile + index * view.rows.tileStep)
            sourceComponent: cell.isAsset ? assetTile : cell.isFolder ? folderTile : cell.isStack ? stackTile : null
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.WithinBounds
        onPressedChanged: {
            const at = point.position
            const place = pressed ? view.childAt(at.x, at.y) : null
            if (place?.cell)
                view.menuWanted(place.cell, place, at.x - place.x, at.y - place.y)
        }
    }

    Loader {
        anchors.horizontalCenter: parent.horizontalCenter
        sourceComponent: view.isButton ? button : null
    }

    // What is loaded finds its cell at its place.
    function cellAt(place: var): var { return place.cell }

    // Once for the row, not once for each of its tiles.
    Component {
        id: assetTile
        AssetTile {
            cell: view.cellAt(parent)
            metrics: view.metrics
            onClicked: modifiers => view.browser.click(cell, modifiers)
            onOpened: view.browser.play(cell.asset)
            onStarToggled: view.browser.toggleStar(cell)
        }
    }
    Component {
        id: folderTile
        FolderTile {
            cell: view.cellAt(parent)
            metrics: view.metrics
            onOpened: view.browser.openFolder(cell.url)
            onFilesDropped: urls => view.browser.dropInto(cell.url, urls)
        }
    }
    Component {
        id: stackTile
        StackTile {
            cell: view.cellAt(parent)
            metrics: view.metrics
            onOpened: view.browser.openFolder(cell.url)
        }
    }
    Component {
        id: button
        Button {
            text: view.row.more
            onClicked: view.browser.showMore(view.row.section)
        }
    }
}
