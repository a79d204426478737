// Brightens a tile's picture under the pointer and moves nothing. Made when the pointer first comes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Loader {
    id: light

    required property bool shown

    anchors.fill: parent
    active: false
    onShownChanged: active = true

    sourceComponent: Rectangle {
        property bool lit: false
        Component.onCompleted: lit = Qt.binding(() => light.shown)

        radius: Theme.radiusPicture
        color: Theme.hover
        opacity: lit ? 1 : 0
        Behavior on opacity { EaseNumber {} }
    }
}
