// The row at the top of the pane: where one is, and the field that filters the page by name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: bar

    required property Browser browser

    function find() { search.forceActiveFocus(Qt.ShortcutFocusReason) }

    implicitHeight: 52
    color: Theme.pane

    Symbol {
        id: symbol
        anchors { left: parent.left; leftMargin: Theme.pageMargin; verticalCenter: parent.verticalCenter }
        visible: name !== ""
        name: bar.browser.symbol
        size: Theme.linePage - Theme.grid
        color: bar.browser.page === "starred" ? Theme.amber : Theme.textSoft
    }
    PathBarView {
        anchors { left: parent.left; leftMargin: Theme.controlPadding; right: search.left; rightMargin: Theme.pageMargin }
        anchors.verticalCenter: parent.verticalCenter
        visible: bar.browser.page === "folder"
        path: bar.browser.path
    }
    Column {
        visible: bar.browser.page !== "folder"
        anchors { left: symbol.visible ? symbol.right : parent.left; right: search.left }
        anchors { leftMargin: symbol.visible ? Theme.gap + 2 : Theme.pageMargin; rightMargin: Theme.pageMargin }
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            style: Label.SheetTitle
            text: bar.browser.title
            elide: Text.ElideMiddle
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            visible: text !== ""
            style: Label.Fact
            text: bar.browser.subtitle
            elide: Text.ElideMiddle
        }
    }
    SearchField {
        id: search
        objectName: "search"
        anchors { right: parent.right; rightMargin: Theme.pageMargin; verticalCenter: parent.verticalCenter }
        width: Math.min(220, bar.width / 3)
        visible: bar.browser.page !== "group" && bar.browser.page !== "tidy"
        placeholderText: qsTr("Filter by name")
        text: bar.browser.search
        // What was typed, and what the clear button took away.
        onTextChanged: bar.browser.search = text
        Keys.onReturnPressed: bar.browser.gridFocused = true
        Keys.onDownPressed: bar.browser.gridFocused = true
    }
    Hairline { anchors.bottom: parent.bottom; width: parent.width }
}
