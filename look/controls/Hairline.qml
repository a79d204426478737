// A line of one device pixel that parts two panes. Lies along its longer side.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window

Rectangle {
    property bool vertical: false

    implicitWidth: vertical ? 1 / Screen.devicePixelRatio : 0
    implicitHeight: vertical ? 0 : 1 / Screen.devicePixelRatio
    color: Theme.line
}
