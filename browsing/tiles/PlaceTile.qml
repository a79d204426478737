// A tile that leads to a folder: what stands in its well and below it is told by those that use it; a click or a key
// opens the folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: tile

    required property var cell // a PageCell
    required property TileMetrics metrics

    property string hint // a tool tip, or empty for none
    property bool captioned: false
    default property alias content: well.data
    readonly property alias lines: below
    readonly property bool hovering: hover.hovered

    signal opened()

    implicitWidth: metrics.width
    implicitHeight: metrics.height(captioned)
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.onPressAction: opened()

    Keys.onReturnPressed: opened()
    Keys.onEnterPressed: opened()
    Keys.onSpacePressed: opened()

    HoverHandler { id: hover }

    Rectangle {
        id: well
        x: Theme.tileMargin
        y: Theme.tileMargin
        width: tile.metrics.wellWidth
        height: tile.metrics.wellHeight
        radius: Theme.radiusPicture
        color: Theme.white(0.03)

        HoverLight { shown: tile.hovering }
    }
    FocusRing {
        anchors.fill: well
        shown: tile.activeFocus
        surfaceRadius: well.radius
    }
    TileText {
        id: below
        x: Theme.tileMargin
        y: tile.metrics.nameTop
        width: tile.metrics.wellWidth
    }

    PressArea { onClicked: tile.opened() }
    TileHint { target: tile; text: tile.hint }
}
