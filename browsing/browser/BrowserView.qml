// The main pane: its toolbar, the page with its header and its status line, and the details of what is selected. Behind
// it is the window's own colour.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: view

    required property Browser browser

    readonly property var empty: browser.emptyState
    readonly property bool inspecting: browser.settings.showInspector
    readonly property int narrowestPage: 336

    // Puts the cursor into the search field, where the page has one.
    function find() { toolbar.find() }

    T.SplitView.minimumWidth: narrowestPage + (inspecting ? inspector.width : 0)
    Component.onCompleted: browser.appear()

    FileDropArea {
        id: drops
        anchors { top: parent.top; bottom: parent.bottom; left: parent.left }
        width: page.width
        possible: view.browser.page === "folder"
        onFilesDropped: urls => view.browser.drop(urls)
    }
    PageToolbar {
        id: toolbar
        width: parent.width
        browser: view.browser
    }
    // Takes its new width at once, and the inspector slides over or away from what that uncovers: the tiles are laid out
    // once and not with each frame.
    Item {
        id: page
        anchors { top: toolbar.bottom; bottom: parent.bottom }
        width: view.inspecting ? view.width - inspector.width : view.width

        Header {
            id: header
            width: parent.width
            browser: view.browser
        }
        Item {
            id: body
            anchors { top: header.bottom; bottom: status.top; left: parent.left; right: parent.right }
            clip: true

            PageGrid {
                anchors.fill: parent
                idle: view.empty.shown || view.browser.page === "group"
                browser: view.browser
            }
            Loader {
                anchors.fill: parent
                active: view.browser.page === "group"
                // The keys were on a card, and are not lost with it.
                onItemChanged: if (!item && activeFocus) view.browser.gridFocused = true
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
            // Around the pictures and not over them.
            FocusRing {
                objectName: "pageTargeted"
                anchors.margins: Theme.grid
                shown: drops.containsDrag
                surfaceRadius: Theme.radiusPicture
            }
        }
        StatusLine {
            id: status
            anchors.bottom: parent.bottom
            width: parent.width
            browser: view.browser
        }
    }
    InspectorPane {
        id: inspector

        // From 0, beyond the edge, to 1.
        property real shown: view.inspecting ? 1 : 0
        Behavior on shown { SpringNumber {} }

        anchors { top: toolbar.bottom; bottom: parent.bottom }
        x: view.width - width * shown
        visible: shown > 0
        browser: view.browser
    }
}
