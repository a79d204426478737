// A tile's tool tip, made while the pointer is over it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Loader {
    id: loader

    required property var tile // tells that it is hovered by `hovering`
    property string text

    anchors.fill: parent
    active: tile.hovering && text !== ""
    sourceComponent: Hint { text: loader.text; control: loader.tile }
}
