// The row of menus at the top of the window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.MenuBar {
    id: bar

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Theme.rowHeight
    leftPadding: Theme.rowInset

    delegate: T.MenuBarItem {
        id: item

        implicitWidth: title.implicitWidth + 2 * Theme.gap
        implicitHeight: Theme.rowHeight
        Accessible.role: Accessible.MenuItem
        Accessible.name: text

        contentItem: Item {
            Label {
                id: title
                anchors.centerIn: parent
                text: item.text
                color: Theme.textSoft
                Accessible.ignored: true
            }
        }
        background: Item {
            Rectangle {
                anchors { fill: parent; topMargin: Theme.grid; bottomMargin: Theme.grid }
                radius: Theme.radiusItem
                color: item.down || item.highlighted ? Theme.menuHover : Theme.clear
            }
        }
    }

    contentItem: Row { Repeater { model: bar.contentModel } }

    background: Rectangle {
        color: Theme.pane
        Hairline { anchors.bottom: parent.bottom; width: parent.width }
    }
}
