// A line of the drawer that does something: a symbol and its words.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.AbstractButton {
    id: line

    property string symbol
    property bool destructive: false

    readonly property color ink: destructive ? Theme.danger : Theme.text

    implicitHeight: Theme.rowHeight + 2
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Bed {
        hovered: line.hovered
        pressed: line.down
    }
    contentItem: Item {
        Symbol {
            id: symbol
            x: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            name: line.symbol
            color: line.destructive ? Theme.danger : Theme.textSoft
        }
        Label {
            anchors { left: symbol.right; leftMargin: Theme.gap + 2; right: parent.right; rightMargin: Theme.gap }
            anchors.verticalCenter: parent.verticalCenter
            text: line.text
            color: line.ink
            Accessible.ignored: true
        }
    }

    FocusRing {
        shown: line.visualFocus
        surfaceRadius: Theme.radiusRow
        outset: 0
    }
}
