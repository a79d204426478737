// A thin bar that shows while something scrolls or the pointer is near.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: control

    readonly property int rest: Theme.grid + 2
    readonly property int shortest: 32

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, rest)
    implicitHeight: Math.max(implicitContentHeight + topPadding + bottomPadding, rest)
    padding: 3
    minimumSize: shortest / Math.max(shortest, orientation === Qt.Vertical ? height : width)
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    hoverEnabled: true

    Accessible.role: Accessible.ScrollBar

    contentItem: Rectangle {
        implicitWidth: control.rest
        implicitHeight: control.rest
        radius: Math.min(width, height) / 2
        color: control.pressed ? Theme.textFaint : control.hovered ? Theme.thumbHover : Theme.thumb
        opacity: control.policy === T.ScrollBar.AlwaysOn || control.active || control.hovered ? 1 : 0
        Behavior on color { EaseColor {} }
        Behavior on opacity { EaseNumber {} }
    }
}
