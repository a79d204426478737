// A tile's tool tip, made while the pointer is over it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Loader {
    id: loader

    required property var target // tells that it is hovered by `hovering`
    property string text

    anchors.fill: parent
    active: target.hovering && text !== ""
    sourceComponent: Hint { text: loader.text; control: loader.target }
}
