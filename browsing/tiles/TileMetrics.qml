// The measures of a tile, from the width of its picture: the same for files, stacks and folders.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

QtObject {
    property real size: 0

    readonly property int wellWidth: Math.round(size)
    readonly property int wellHeight: Math.round(size * 3 / 4)
    readonly property int width: wellWidth + 2 * Theme.tileMargin
    readonly property int wellBottom: wellHeight + 2 * Theme.tileMargin
    readonly property int nameTop: wellBottom + Theme.grid

    // `captioned` tiles have a second line.
    function height(captioned: bool): int {
        return nameTop + Theme.lineBody + (captioned ? Theme.lineFact : 0)
    }
}
