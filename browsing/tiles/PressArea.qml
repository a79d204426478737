// Takes clicks in a scrolling page: a mouse that is pressed here selects and never flings the page, while a finger may
// still scroll it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

MouseArea {
    anchors.fill: parent
    onPressed: mouse => preventStealing = mouse.source === Qt.MouseEventNotSynthesized
}
