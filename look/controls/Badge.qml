// A short fact over a picture: a duration, a count.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Rectangle {
    property alias text: label.text
    property alias symbol: symbol.name

    implicitWidth: row.implicitWidth + 2 * (Theme.grid + 1)
    implicitHeight: Theme.lineFact + 2
    radius: Theme.radiusBadge
    color: Theme.badgeBed

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Theme.grid

        Symbol {
            id: symbol
            anchors.verticalCenter: parent.verticalCenter
            visible: name !== ""
            size: Theme.sizeFact
            color: Theme.textOnBadge
        }
        Label {
            id: label
            visible: text !== ""
            style: Label.Fact
            tabular: true
            color: Theme.textOnBadge
        }
    }
}
