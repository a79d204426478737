// Something that floats over the window: raised, rounded, edged with a hairline, with a shadow.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look

Rectangle {
    id: surface

    radius: Theme.radiusSheet
    color: Theme.raised
    border.width: 1 / Screen.devicePixelRatio
    border.color: Theme.line

    Shadow {
        anchors.fill: parent
        z: -1
        radius: surface.radius
        blur: Theme.shadowBlur
        drop: Theme.shadowDrop
        color: Theme.shadow
    }
}
