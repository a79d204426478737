// One of the pictures on a project's card, or a plain cell where there is none.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Rectangle {
    id: thumb

    property var asset: null // an Asset, or null

    readonly property int thumbnailSize: 140

    radius: Theme.radiusFan
    color: Theme.well

    Loader {
        anchors.fill: parent
        active: thumb.asset !== null
        sourceComponent: ThumbnailView {
            asset: thumb.asset
            size: thumb.thumbnailSize
            backdrop: true
            plainWhileLoading: true
            cornerRadius: thumb.radius
        }
    }
}
