// The pointer over the cells of a table: pressed and moved it selects them, beyond an edge it scrolls there, and a second
// click selects one. A finger scrolls as ever.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

MouseArea {
    id: pointer

    required property TableView view
    required property CellSelection selection

    readonly property int tick: 16   // milliseconds between two steps of the scrolling beyond an edge
    readonly property real ease: 0.2 // of the way beyond the edge for each of them
    readonly property int still: Qt.styleHints.startDragDistance
    property point pressedSpot
    property bool moved: false

    // The cell under a point, or the one nearest to it.
    function cellAt(x: real, y: real): point {
        const right = Math.max(0, Math.min(view.width, view.contentWidth - view.contentX) - 1)
        const bottom = Math.max(0, Math.min(view.height, view.contentHeight - view.contentY) - 1)
        const left = Math.max(0, -view.contentX)
        return view.cellAtPosition(view.contentX + Math.max(left, Math.min(x, right)),
                                   view.contentY + Math.max(0, Math.min(y, bottom)), true)
    }

    function extend() {
        const cell = cellAt(mouseX, mouseY)
        if (cell.x >= 0 && cell.y >= 0)
            selection.extend(cell.x, cell.y)
    }

    function within(value: real, least: real, most: real): real { return Math.max(least, Math.min(value, most)) }
    function beyond(value: real, most: real): real { return value < 0 ? value : Math.max(0, value - most) }

    preventStealing: true // the view would take the pointer and scroll

    onPressed: mouse => {
        if (mouse.source !== Qt.MouseEventNotSynthesized) {
            mouse.accepted = false
            return
        }
        pressedSpot = Qt.point(mouse.x, mouse.y)
        moved = false
        const cell = cellAt(mouse.x, mouse.y)
        if (mouse.modifiers & Qt.ShiftModifier && !selection.isEmpty)
            selection.extend(cell.x, cell.y)
        else
            selection.begin(cell.x, cell.y)
    }
    onDoubleClicked: mouse => {
        const cell = cellAt(mouse.x, mouse.y)
        selection.begin(cell.x, cell.y, 2)
    }
    onPositionChanged: mouse => {
        moved = moved || Math.abs(mouse.x - pressedSpot.x) > still || Math.abs(mouse.y - pressedSpot.y) > still
        if (moved)
            extend()
    }

    Timer {
        interval: pointer.tick
        repeat: true
        running: pointer.pressed && pointer.moved && !pointer.contains(Qt.point(pointer.mouseX, pointer.mouseY))
        onTriggered: {
            const view = pointer.view
            const x = view.contentX + pointer.beyond(pointer.mouseX, pointer.width) * pointer.ease
            const y = view.contentY + pointer.beyond(pointer.mouseY, pointer.height) * pointer.ease
            view.contentX = pointer.within(x, view.originX, Math.max(view.originX, view.originX + view.contentWidth - view.width))
            view.contentY = pointer.within(y, view.originY, Math.max(view.originY, view.originY + view.contentHeight - view.height))
            pointer.extend()
        }
    }
}
