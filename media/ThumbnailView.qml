// How every tile, row and card shows a file: its picture, or the symbol of its kind while there is none.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    property alias asset: picture.asset
    property alias size: picture.size
    property alias backdrop: picture.backdrop
    property alias cornerRadius: picture.cornerRadius
    property alias held: picture.held
    readonly property alias hasImage: picture.hasImage
    readonly property alias covering: picture.covering
    readonly property alias failed: picture.failed

    // Another where the picture is asked for in a size that is not the view's.
    property real symbolSize: Math.round(0.22 * size)

    // Nothing stands for the file before it is known to have no picture.
    property bool plainWhileLoading: false

    Symbol {
        anchors.centerIn: parent
        visible: !view.hasImage && (view.failed || !view.plainWhileLoading)
        name: picture.kindSymbol
        size: view.symbolSize
        color: Theme.textFaint
    }
    ThumbnailPicture {
        id: picture
        anchors.fill: parent
    }
}
