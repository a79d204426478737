// A table of a text: its head stays above, the cells below scroll both ways, and only those that are seen are items.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    required property DocumentTable table

    readonly property int character: 9 // the width of a wide one
    readonly property int rowHeight: Theme.rowHeight

    readonly property bool hasSelection: !selection.isEmpty

    function selectAll() { selection.selectAll() }
    function copy() { selection.copy() }
    function scrollBy(parts: real) { glide.scrollTo(cells.contentY + parts * cells.height) }
    function scrollToEnd(end: bool) { glide.scrollTo(end ? cells.contentHeight : 0) }
    function widthOf(column: int): int { return table.charactersOf(column) * character + 2 * Theme.controlPadding }

    CellSelection {
        id: selection
        table: view.table
    }
    Item {
        id: head
        width: parent.width
        height: view.rowHeight
        clip: true

        Rectangle {
            anchors.fill: parent
            visible: selection.hasHead
            color: Theme.amberSelection
        }

        Row {
            x: -cells.contentX

            Repeater {
                model: view.table.head
                Label {
                    required property string modelData
                    required property int index
                    width: view.widthOf(index)
                    height: view.rowHeight
                    leftPadding: Theme.controlPadding
                    rightPadding: Theme.controlPadding
                    style: Label.Section
                    horizontalAlignment: view.table.isNumeric(index) ? Text.AlignRight : Text.AlignLeft
                    text: modelData
                }
            }
        }
        Hairline { width: parent.width; anchors.bottom: parent.bottom }
    }
    TableView {
        id: cells
        objectName: "documentCells"
        anchors { fill: parent; topMargin: head.height }
        leftMargin: Theme.grid
        rightMargin: Theme.grid
        bottomMargin: Theme.gap
        clip: true
        pixelAligned: true
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        model: view.table
        columnWidthProvider: column => view.widthOf(column)
        rowHeightProvider: () => view.rowHeight
        T.ScrollBar.vertical: ScrollBar { id: upright }
        T.ScrollBar.horizontal: ScrollBar { id: lying }

        onMovementStarted: glide.stop()

        WheelHandler {
            acceptedModifiers: Qt.ShiftModifier
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => {
                const most = Math.max(cells.originX, cells.originX + cells.contentWidth - cells.width)
                cells.contentX = Math.max(cells.originX, Math.min(cells.contentX - event.angleDelta.y, most))
            }
        }

        delegate: Label {
            id: cellLabel

            required property string cell
            required property int column
            required property int row
            readonly property bool marked: column >= selection.cells.x && column < selection.cells.x + selection.cells.width
                                           && row >= selection.cells.y && row < selection.cells.y + selection.cells.height
            leftPadding: Theme.controlPadding
            rightPadding: Theme.controlPadding
            color: Theme.textSoft
            tabular: true
            horizontalAlignment: view.table.isNumeric(column) ? Text.AlignRight : Text.AlignLeft
            text: cell

            Rectangle {
                anchors.fill: parent
                z: -1
                visible: parent.marked
                color: Theme.amberSelection
            }
            Loader {
                anchors.fill: parent
                active: cellLabel.truncated
                sourceComponent: Hint { text: cellLabel.text }
            }
        }

        CellPointer {
            objectName: "documentPointer"
            parent: cells
            anchors { fill: parent; rightMargin: upright.width; bottomMargin: lying.height }
            view: cells
            selection: selection
        }
    }
    Connections {
        target: view.table
        function onHeadChanged() { cells.forceLayout() }
    }
    DocumentGlide {
        id: glide
        view: cells
    }
}
