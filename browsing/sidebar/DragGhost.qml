// What a dragged project looks like on its way, and what tells the rows below the pointer that it is there.
//
// It moves over the whole window, since the pointer may leave the pane and come back.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: ghost
    objectName: "ghost"

    property string payload // what drop areas read, through the drag's source
    property string name
    property int hue: 0
    readonly property bool flying: Drag.active

    // Takes up what a row would drag, at a point of that row.
    function lift(item: Item, point: point, row: var, payload: string) {
        const place = item.mapToItem(parent, point)
        ghost.x = place.x
        ghost.y = place.y
        ghost.name = row.title
        ghost.hue = row.hue
        ghost.payload = payload
    }

    function fly() { Drag.active = true }
    function land() { Drag.drop() }
    function giveUp() { Drag.cancel() }

    visible: flying
    z: 1
    Drag.dragType: Drag.Internal
    Drag.source: ghost

    Surface {
        x: Theme.gap
        y: Theme.gap
        width: content.width + 2 * Theme.gap
        height: Theme.rowHeight
        radius: Theme.radiusRow

        Row {
            id: content
            x: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.gap

            ProjectBadge {
                anchors.verticalCenter: parent.verticalCenter
                name: ghost.name
                hue: ghost.hue
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, 220)
                text: ghost.name
                elide: Text.ElideMiddle
            }
        }
    }

    Shortcut {
        sequence: "Esc"
        enabled: ghost.flying
        onActivated: ghost.giveUp()
    }
}
