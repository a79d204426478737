// What lies under a row, an item or a symbol that can be pressed: nothing at rest, brighter under the pointer, amber
// when selected.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window

Rectangle {
    property bool hovered: false
    property bool pressed: false
    property bool selected: false
    property bool targeted: false // a drag that may land here

    radius: Theme.radiusRow
    color: selected || targeted ? Theme.amberSoft : pressed ? Theme.press : hovered ? Theme.hover : Theme.clear
    border.width: targeted ? Theme.ring : selected && Theme.highContrast ? 1 / Screen.devicePixelRatio : 0
    border.color: Theme.amber

    Behavior on color { EaseColor {} }
}
