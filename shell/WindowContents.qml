// What the window holds: the sidebar and the page side by side.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media
import Lumbra.Browsing
import Lumbra.Shell

Item {
    id: contents

    required property QtObject library
    required property Browser browser
    required property BrowserCommands commands
    required property Sidebar sidebar
    required property RoomDoor door
    required property WindowMemory memory
    required property UpdateCheck updater

    property bool covered: false // by what fills the window

    readonly property string title: browser.subtitle === "" ? browser.title : browser.title + " — " + browser.subtitle
    readonly property MainMenu menuBar: MainMenu {
        library: contents.library
        commands: contents.commands
        updater: contents.updater
    }

    anchors.fill: parent

    SplitView {
        anchors.fill: parent
        opacity: contents.covered ? 0 : 1 // nothing is drawn that nobody sees
        onResizingChanged: if (!resizing) contents.memory.sidebarWidth = pane.width

        SidebarView {
            id: pane
            T.SplitView.minimumWidth: contents.memory.leastSidebarWidth
            T.SplitView.preferredWidth: contents.memory.sidebarWidth
            T.SplitView.maximumWidth: contents.memory.mostSidebarWidth
            sidebar: contents.sidebar
        }
        BrowserView {
            id: page
            T.SplitView.fillWidth: true
            browser: contents.browser
        }
    }

    Shortcut {
        sequence: "Ctrl+F"
        enabled: Sheets.shown === 0 && !contents.door.open
        onActivated: page.find()
    }
}
