// The line between two groups of a menu's entries.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.MenuSeparator {
    implicitHeight: Theme.gap + 1
    padding: Theme.grid
    leftPadding: Theme.gap
    rightPadding: Theme.gap

    contentItem: Item {
        Hairline {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
        }
    }
}
