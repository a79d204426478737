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
    readonly property real span: rows.columns * rows.cellWidth + (rows.columns - 1) * Theme.tileGap
    readonly property real inset: (width - span) / 2

    signal menuWanted(cell: var, tile: Item, x: real, y: real)

    implicitHeight: (isButton ? Theme.controlHeight : metrics.height(row.captioned)) + row.gap

    Repeater {
        // As many as there are columns, in every row: a row that is used again keeps its tiles.
        model: view.isButton ? 0 : view.rows.columns

        Loader {
            id: place

            required property int index
            readonly property var cell: view.row.cell(index)

            x: Math.round(view.inset + index * (view.rows.cellWidth + Theme.tileGap)
                          + (view.rows.cellWidth - view.metrics.width) / 2)
            active: cell.isAsset || cell.isFolder || cell.isStack
            sourceComponent: cell.isAsset ? assetTile : cell.isFolder ? folderTile : stackTile

            Component {
                id: assetTile
                AssetTile {
                    cell: place.cell
                    metrics: view.metrics
                    onClicked: modifiers => view.browser.click(place.cell, modifiers)
                    onOpened: view.browser.play(place.cell.asset)
                }
            }
            Component {
                id: folderTile
                FolderTile {
                    cell: place.cell
                    metrics: view.metrics
                    onOpened: view.browser.openFolder(place.cell.url)
                }
            }
            Component {
                id: stackTile
                StackTile {
                    cell: place.cell
                    metrics: view.metrics
                    onOpened: view.browser.openFolder(place.cell.url)
                }
            }

            TapHandler {
                enabled: place.active && !place.cell.isStack
                acceptedButtons: Qt.RightButton
                gesturePolicy: TapHandler.WithinBounds
                onPressedChanged: if (pressed)
                    view.menuWanted(place.cell, place, point.position.x, point.position.y)
            }
        }
    }

    Loader {
        active: view.isButton
        anchors.horizontalCenter: parent.horizontalCenter
        sourceComponent: Button {
            text: view.row.more
            onClicked: view.browser.showMore(view.row.section)
        }
    }
}
