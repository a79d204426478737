// Panes side by side, parted by a hairline that can be dragged.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.SplitView {
    id: split

    handle: Item {
        implicitWidth: line.implicitWidth
        implicitHeight: line.implicitHeight
        // The line is thin; what takes the pointer is not.
        containmentMask: Item {
            x: split.orientation === Qt.Horizontal ? -Theme.grid : 0
            y: split.orientation === Qt.Horizontal ? 0 : -Theme.grid
            width: split.orientation === Qt.Horizontal ? 2 * Theme.grid + 1 : split.width
            height: split.orientation === Qt.Horizontal ? split.height : 2 * Theme.grid + 1
        }

        Hairline {
            id: line
            anchors.fill: parent
            vertical: split.orientation === Qt.Horizontal
            color: T.SplitHandle.pressed || T.SplitHandle.hovered ? Theme.amber : Theme.line
        }
    }
}
