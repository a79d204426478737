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

    readonly property bool onRecent: browser.page === "recent"

    // What the parts take in their widest and their smallest forms decides which of them stand there.
    readonly property real dividerRoom: 1 + row.spacing
    readonly property real boxRoom: subfolders.visible ? subfolders.implicitWidth + row.spacing : 0
    readonly property real sortWidth: menuWidth(qsTr("Sort"))
    readonly property real kindWidth: menuWidth(qsTr("Kind"))
    readonly property real periodWidth: onRecent ? menuWidth(Chips.periodText(browser.settings.recentDays)) : 0
    readonly property real periodRoom: onRecent ? row.spacing + dividerRoom : 0
    readonly property real besidePeriods: periodRoom + kindWidth + row.spacing + dividerRoom + boxRoom
    readonly property bool compactPeriods: onRecent && periods.item
        && (periods.item as PeriodChips).fullWidth + besidePeriods + sortWidth > row.width
    readonly property bool compactSort: periodWidth + besidePeriods + sortWidth > row.width

    function menuWidth(text: string): real {
        return 2 * Theme.controlPadding + Theme.sizeSymbol + Theme.grid + 2 + Math.ceil(metrics.advanceWidth(text))
    }

    implicitHeight: wanted ? Theme.headerHeight : 0
    visible: wanted
    color: Theme.window

    FontMetrics {
        id: metrics
        font { family: Theme.family; pixelSize: Theme.sizeBody; weight: Theme.semibold }
    }
    Row {
        id: row
        x: Theme.pageMargin
        width: parent.width - 2 * Theme.pageMargin
        height: parent.height
        spacing: Theme.controlPadding

        Loader {
            id: periods
            anchors.verticalCenter: parent.verticalCenter
            active: header.onRecent
            visible: active
            sourceComponent: PeriodChips {
                settings: header.browser.settings
                compact: header.compactPeriods
            }
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
                onlySymbol: header.compactSort
            }
            CheckBox {
                id: subfolders
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
