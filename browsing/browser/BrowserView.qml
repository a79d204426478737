// The main pane: its toolbar, the header of the page, the page itself, and the status line.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: view

    required property Browser browser

    readonly property var empty: browser.emptyState

    // Puts the cursor into the search field.
    function find() { toolbar.find() }

    color: Theme.window
    Component.onCompleted: browser.appear()

    PageToolbar {
        id: toolbar
        width: parent.width
        browser: view.browser
    }
    Header {
        id: header
        anchors.top: toolbar.bottom
        width: parent.width
        browser: view.browser
    }
    Item {
        id: body
        anchors { top: header.bottom; bottom: status.top; left: parent.left; right: parent.right }
        clip: true

        PageGrid {
            anchors.fill: parent
            visible: !view.empty.shown && view.browser.page !== "group"
            browser: view.browser
        }
        Loader {
            anchors.fill: parent
            active: view.browser.page === "group"
            sourceComponent: GroupPage { browser: view.browser }
        }
        EmptyState {
            width: parent.width
            visible: view.empty.shown && !view.empty.busy
            symbol: view.empty.symbol
            title: view.empty.title
            text: view.empty.text
            buttonText: view.empty.button
            offset: view.empty.offset
            onActivated: view.browser.showEverything()
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            y: view.empty.offset
            visible: view.empty.busy
            spacing: Theme.gap

            Spinner { anchors.verticalCenter: parent.verticalCenter }
            Label {
                color: Theme.textSoft
                text: view.empty.title
            }
        }
    }
    StatusLine {
        id: status
        anchors.bottom: parent.bottom
        width: parent.width
        browser: view.browser
    }
}
