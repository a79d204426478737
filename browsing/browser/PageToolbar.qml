// The row at the top of the pane: where one is, what can be made here, and the field that filters the page by name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: bar

    required property Browser browser

    readonly property bool inFolder: browser.page === "folder"
    readonly property bool inGroup: browser.page === "group"
    readonly property var group: inGroup ? browser.path.steps[0] : undefined

    function find() {
        if (!search.visible)
            return
        search.forceActiveFocus(Qt.ShortcutFocusReason)
        search.selectAll()
    }

    implicitHeight: 52
    color: Theme.pane

    Item {
        id: where
        // The same on all pages: a path that is resized while its steps come and go ends Qt 6.4.
        anchors { left: parent.left; leftMargin: Theme.controlPadding }
        anchors { right: tools.left; rightMargin: Theme.pageMargin; top: parent.top; bottom: parent.bottom }

        PathBarView {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
            visible: bar.inFolder
            path: bar.browser.path
        }
        Symbol {
            id: symbol
            x: Theme.grid
            anchors.verticalCenter: parent.verticalCenter
            visible: name !== ""
            name: bar.browser.symbol
            size: Theme.linePage - Theme.grid
            color: bar.browser.page === "starred" ? Theme.amber : Theme.textSoft
        }
        ProjectBadge {
            id: badge
            x: Theme.grid
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.inGroup
            size: Theme.linePage
            name: bar.group?.badge ?? ""
            hue: bar.group?.hue ?? 0
        }
        Column {
            visible: !bar.inFolder
            anchors { left: bar.inGroup ? badge.right : symbol.right; leftMargin: Theme.gap + 2; right: parent.right }
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width
                style: Label.PageTitle
                text: Bidi.inOneLine(bar.browser.title)
                elide: Text.ElideMiddle
                Accessible.role: Accessible.Heading
            }
            Label {
                width: parent.width
                visible: text !== ""
                style: Label.Fact
                text: Bidi.inOneLine(bar.browser.subtitle)
                elide: Text.ElideMiddle
            }
        }
    }
    Row {
        id: tools
        anchors { right: parent.right; rightMargin: Theme.controlPadding; verticalCenter: parent.verticalCenter }
        spacing: Theme.gap

        IconButton {
            objectName: "newFolder"
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.inFolder
            symbol: "folder.badge.plus"
            text: qsTr("New Folder")
            hint: qsTr("New folder here (⇧⌘N)")
            onClicked: bar.browser.newFolder()
        }
        SearchField {
            id: search
            objectName: "search"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(140, Math.min(220, bar.width / 4)) // the path comes first
            visible: !bar.inGroup && bar.browser.page !== "tidy"
            placeholderText: qsTr("Filter by name")
            text: bar.browser.search
            // What was typed, and what the clear button took away.
            onTextChanged: bar.browser.search = text
            Keys.onReturnPressed: bar.browser.gridFocused = true
            Keys.onDownPressed: bar.browser.gridFocused = true
        }
        IconButton {
            objectName: "details"
            anchors.verticalCenter: parent.verticalCenter
            symbol: "sidebar.right"
            text: qsTr("Details")
            hint: bar.browser.settings.showInspector ? qsTr("Hide details") : qsTr("Show details")
            Accessible.checkable: true
            Accessible.checked: bar.browser.settings.showInspector
            onClicked: bar.browser.settings.showInspector = !bar.browser.settings.showInspector
        }
    }
    Hairline { anchors.bottom: parent.bottom; width: parent.width }
}
