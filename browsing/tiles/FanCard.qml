// One card of a fan: the picture of a file, and a plain face until there is one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Rectangle {
    id: card

    required property var asset // an Asset

    // One size whatever the zoom, so that all tiles share the cached picture.
    readonly property int thumbnailSize: 240

    radius: Theme.radiusFan
    color: Theme.raised
    // Tilted edges are jagged without it.
    antialiasing: true

    ThumbnailView {
        anchors.fill: parent
        asset: card.asset
        size: card.thumbnailSize
        backdrop: true
        symbolSize: Math.round(0.22 * card.width)
        plainWhileLoading: true
        cornerRadius: Theme.radiusFan
    }

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        antialiasing: true
        color: Theme.clear
        border { width: 1 / Screen.devicePixelRatio; color: Theme.line }
    }
}
