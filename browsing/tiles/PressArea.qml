// Takes clicks in a scrolling page: a mouse that is pressed here selects, or pulls what lies here along with it, and never
// flings the page, while a finger may still scroll it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

MouseArea {
    id: area

    // The pressed mouse has moved further than in a click. Once for each press.
    signal pulled()

    property point start
    property bool armed: false

    anchors.fill: parent
    onPressed: mouse => {
        preventStealing = mouse.source === Qt.MouseEventNotSynthesized
        start = Qt.point(mouse.x, mouse.y)
        armed = preventStealing
    }
    onPositionChanged: mouse => {
        const far = Math.max(Math.abs(mouse.x - start.x), Math.abs(mouse.y - start.y)) >= Qt.styleHints.startDragDistance
        if (!armed || !far)
            return
        armed = false
        pulled()
    }
}
