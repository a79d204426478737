// The pointer over a text in rows: pressed and moved it selects, by words after two clicks and by rows after three;
// beyond an edge it scrolls there. A click on a link follows it. A finger scrolls as ever.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

MouseArea {
    id: pointer

    required property ListView view
    required property real column // where its rows are
    required property TextSelection selection

    signal linkActivated(link: string)

    readonly property int still: Qt.styleHints.startDragDistance
    readonly property int tick: 16     // milliseconds between two steps of the scrolling beyond an edge
    readonly property real ease: 0.2   // of the way beyond the edge for each of them
    property int clicks: 0
    property real pressedAt: 0         // milliseconds
    property point pressedSpot
    property bool moved: false
    property string link
    property bool overWords: false

    function rowAt(y: real): int {
        const content = y + view.contentY
        const row = view.indexAt(column, content)
        return row >= 0 ? row : content < view.originY + view.contentHeight / 2 ? 0 : view.count - 1
    }

    function spotAt(x: real, y: real): var {
        const inside = Math.max(0, Math.min(y, height - 1))
        const row = rowAt(inside)
        const item = view.itemAtIndex(row) as DocumentRowView
        if (!item)
            return { row: row, at: 0 }
        const point = pointer.mapToItem(item, x, inside)
        const isBelow = point.y > item.height
        return { row: row, at: isBelow ? 0x7fffffff : item.spotAt(point.x, point.y) }
    }

    function look(x: real, y: real) {
        const item = view.itemAt(column, y + view.contentY) as DocumentRowView
        const point = item ? pointer.mapToItem(item, x, y) : null
        overWords = item !== null && point.x >= 0 && point.x < item.width && !item.isFigure
        link = item?.linkAt(point.x, point.y) ?? ""
    }

    function extend() {
        const spot = spotAt(mouseX, mouseY)
        selection.extend(spot.row, spot.at)
    }

    hoverEnabled: true
    preventStealing: true // the view would take the pointer and scroll
    cursorShape: link !== "" && !pressed ? Qt.PointingHandCursor : overWords ? Qt.IBeamCursor : Qt.ArrowCursor

    onPressed: mouse => {
        if (mouse.source !== Qt.MouseEventNotSynthesized) {
            mouse.accepted = false
            return
        }
        const now = Date.now()
        const isAgain = now - pressedAt < Qt.styleHints.mouseDoubleClickInterval
            && Math.abs(mouse.x - pressedSpot.x) <= still && Math.abs(mouse.y - pressedSpot.y) <= still
        clicks = isAgain ? clicks % 3 + 1 : 1
        pressedAt = now
        pressedSpot = Qt.point(mouse.x, mouse.y)
        moved = false
        const spot = spotAt(mouse.x, mouse.y)
        if (mouse.modifiers & Qt.ShiftModifier && !selection.isEmpty)
            selection.extend(spot.row, spot.at)
        else
            selection.begin(spot.row, spot.at, clicks)
    }
    onPositionChanged: mouse => {
        if (!pressed)
            return look(mouse.x, mouse.y)
        moved = moved || Math.abs(mouse.x - pressedSpot.x) > still || Math.abs(mouse.y - pressedSpot.y) > still
        if (moved)
            extend()
    }
    onReleased: mouse => {
        look(mouse.x, mouse.y)
        if (!moved && clicks === 1 && link !== "")
            linkActivated(link)
    }

    Timer {
        interval: pointer.tick
        repeat: true
        running: pointer.pressed && pointer.moved && (pointer.mouseY < 0 || pointer.mouseY > pointer.height)
        onTriggered: {
            const beyond = pointer.mouseY < 0 ? pointer.mouseY : pointer.mouseY - pointer.height
            const least = pointer.view.originY
            const most = Math.max(least, least + pointer.view.contentHeight - pointer.view.height)
            pointer.view.contentY = Math.max(least, Math.min(pointer.view.contentY + beyond * pointer.ease, most))
            pointer.extend()
        }
    }
}
