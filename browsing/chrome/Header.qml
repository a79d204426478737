// The row above the tiles: the period, the kinds, the order, and whether subfolders count.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: header

    required property Browser browser

    readonly property bool wanted: browser.page !== "group" && browser.page !== "tidy"

    implicitHeight: wanted ? Theme.headerHeight : 0
    visible: wanted
    color: Theme.window

    Row {
        id: row
        x: Theme.pageMargin
        width: parent.width - 2 * Theme.pageMargin
        height: parent.height
        spacing: Theme.controlPadding

        Loader {
            id: periods
            anchors.verticalCenter: parent.verticalCenter
            active: header.browser.page === "recent"
            visible: active
            sourceComponent: PeriodChips { settings: header.browser.settings }
        }
        Divider { visible: periods.active }
        KindChips {
            anchors.verticalCenter: parent.verticalCenter
            settings: header.browser.settings
            counts: header.browser.kindCounts
            available: row.width - (periods.active ? periods.width + 2 * row.spacing + 1 : 0) - tail.width
                - row.spacing
        }
        Row {
            id: tail
            height: parent.height
            spacing: row.spacing

            Divider {}
            SortMenu {
                anchors.verticalCenter: parent.verticalCenter
                settings: header.browser.settings
            }
            CheckBox {
                anchors.verticalCenter: parent.verticalCenter
                visible: header.browser.page === "folder"
                text: qsTr("Subfolders")
                hint: qsTr("Show media from every folder inside this one")
                checked: header.browser.settings.recursive
                onToggled: header.browser.settings.recursive = checked
            }
        }
    }

    component Divider: Item {
        width: 1
        height: parent.height
        Hairline {
            anchors.centerIn: parent
            vertical: true
            height: Theme.sizeSymbol
        }
    }
}
