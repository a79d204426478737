// The row of menus at the top of the window. F10 opens the first, from which the arrow keys lead on.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.MenuBar {
    id: bar

    readonly property bool isOpen: {
        for (let i = 0; i < count; ++i)
            if (menuAt(i)?.visible)
                return true
        return false
    }

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Theme.rowHeight
    leftPadding: Theme.rowInset

    delegate: T.MenuBarItem {
        id: item

        implicitWidth: title.implicitWidth + 2 * Theme.gap
        implicitHeight: Theme.rowHeight
        hoverEnabled: true

        property bool isAwaited: false

        // A bar whose menu has closed by itself thinks it open still, and closes it once more.
        onTriggered: {
            isAwaited = !isAwaited && !menu.visible
            Qt.callLater(openIfAwaited)
        }
        function openIfAwaited(): void {
            if (isAwaited)
                triggered()
        }
        Connections {
            target: item.menu
            function onAboutToShow() { item.isAwaited = false }
        }

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
                // Not where `highlighted`: that stays once Escape has closed a menu under the pointer.
                color: (item.menu?.visible ?? false) || !bar.isOpen && (item.hovered || item.down) ? Theme.menuHover
                                                                                                : Theme.clear
            }
        }
    }

    contentItem: Row { Repeater { model: bar.contentModel } }

    Shortcut {
        sequence: "F10"
        enabled: bar.count > 0 && Sheets.shown === 0
        onActivated: (bar.itemAt(0) as T.MenuBarItem).triggered()
    }

    background: Rectangle {
        color: Theme.pane
        Hairline { anchors.bottom: parent.bottom; width: parent.width }
    }
}
