// The pointer over the pages of a document: pressed and moved it selects their words, beyond an edge it scrolls there, and
// a second click selects a word. With the middle button it drags the pages themselves. A finger scrolls as ever.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

MouseArea {
    id: pointer

    required property Flickable view
    required property DocumentPages pages
    required property PageSelection selection

    readonly property int still: Qt.styleHints.startDragDistance
    readonly property int tick: 16   // milliseconds between two steps of the scrolling beyond an edge
    readonly property real ease: 0.2 // of the way beyond the edge for each of them
    property point pressedSpot
    property bool moved: false
    property bool overPage: false

    function spotAt(x: real, y: real): var {
        return pages.spotAt(Qt.point(view.contentX + x, view.contentY + Math.max(0, Math.min(y, height))))
    }

    function within(value: real, most: real): real { return Math.max(0, Math.min(value, most)) }
    function beyond(value: real, most: real): real { return value < 0 ? value : Math.max(0, value - most) }

    hoverEnabled: true
    preventStealing: true // the view would take the pointer and scroll
    acceptedButtons: Qt.LeftButton | Qt.MiddleButton
    cursorShape: pressedButtons & Qt.MiddleButton ? Qt.ClosedHandCursor : overPage ? Qt.IBeamCursor : Qt.ArrowCursor

    onPressed: mouse => {
        if (mouse.source !== Qt.MouseEventNotSynthesized) {
            mouse.accepted = false
            return
        }
        pressedSpot = Qt.point(mouse.x, mouse.y)
        moved = false
        if (mouse.button !== Qt.LeftButton)
            return
        if (mouse.modifiers & Qt.ShiftModifier && !selection.isEmpty)
            selection.extend(spotAt(mouse.x, mouse.y))
        else
            selection.begin(spotAt(mouse.x, mouse.y))
    }
    onDoubleClicked: mouse => {
        if (mouse.button === Qt.LeftButton)
            selection.begin(spotAt(mouse.x, mouse.y), 2)
    }
    onPositionChanged: mouse => {
        const part = spotAt(mouse.x, mouse.y).part
        overPage = part.x >= 0 && part.x <= 1 && part.y >= 0 && part.y <= 1
        if (!pressed)
            return
        if (pressedButtons & Qt.MiddleButton) {
            view.contentX = within(view.contentX + pressedSpot.x - mouse.x, view.contentWidth - view.width)
            view.contentY = within(view.contentY + pressedSpot.y - mouse.y, view.contentHeight - view.height)
            pressedSpot = Qt.point(mouse.x, mouse.y)
            return
        }
        moved = moved || Math.abs(mouse.x - pressedSpot.x) > still || Math.abs(mouse.y - pressedSpot.y) > still
        if (moved)
            selection.extend(spotAt(mouse.x, mouse.y))
    }

    Timer {
        interval: pointer.tick
        repeat: true
        running: pointer.moved && pointer.pressedButtons & Qt.LeftButton && !pointer.contains(Qt.point(pointer.mouseX, pointer.mouseY))
        onTriggered: {
            const view = pointer.view
            view.contentX = pointer.within(view.contentX + pointer.beyond(pointer.mouseX, pointer.width) * pointer.ease, view.contentWidth - view.width)
            view.contentY = pointer.within(view.contentY + pointer.beyond(pointer.mouseY, pointer.height) * pointer.ease, view.contentHeight - view.height)
            pointer.selection.extend(pointer.spotAt(pointer.mouseX, pointer.mouseY))
        }
    }
}
