// The amber ring around whatever the keyboard would act on: `FocusRing { shown: control.visualFocus }`, as the last
// child of the control.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Rectangle {
    property bool shown: false
    property int surfaceRadius: Theme.radiusControl
    property bool apart: false // from a surface that is amber itself, in which it would be lost
    property int outset: apart ? 2 * Theme.ring : Theme.ring

    anchors.fill: parent
    anchors.margins: -outset
    visible: shown
    radius: surfaceRadius + outset
    color: Theme.clear
    border.width: Theme.ring
    border.color: Theme.amber
}
