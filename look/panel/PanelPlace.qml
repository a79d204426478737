// One of the places beside a panel's list, to go there at once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.Button {
    id: place

    property string symbol

    implicitHeight: Theme.rowHeight
    leftPadding: Theme.rowInset
    rightPadding: Theme.rowInset
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Symbol {
            id: symbol
            anchors.verticalCenter: parent.verticalCenter
            name: place.symbol
            color: place.checked ? Theme.amber : Theme.textSoft
        }
        Label {
            anchors.left: symbol.right
            anchors.leftMargin: Theme.gap
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: place.text
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    background: Bed {
        hovered: place.hovered
        pressed: place.down
        selected: place.checked
    }

    FocusRing { shown: place.visualFocus; surfaceRadius: Theme.radiusRow; outset: 0 }
}
