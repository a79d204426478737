// The one window: the sidebar and the page side by side, and above them whatever takes the window over for a while.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic as Controls
import Lumbra.Look
import Lumbra.Media
import Lumbra.Browsing
import Lumbra.Shell

Controls.ApplicationWindow {
    id: window

    required property QtObject library
    required property Browser browser
    required property BrowserCommands commands
    required property Sidebar sidebar
    required property RoomDoor door
    required property Palette jumpTo
    required property Frame frame
    required property Onboarding onboarding
    required property WindowPanels panels
    required property TransferProgress transfer
    required property WindowMemory memory
    required property UpdateCheck updater

    title: browser.subtitle === "" ? browser.title : browser.title + " — " + browser.subtitle
    color: Theme.window
    menuBar: MainMenu {
        library: window.library
        commands: window.commands
        updater: window.updater
    }

    SplitView {
        anchors.fill: parent
        opacity: room.coversAll ? 0 : 1 // nothing is drawn that nobody sees
        onResizingChanged: if (!resizing) window.memory.sidebarWidth = pane.width

        SidebarView {
            id: pane
            Controls.SplitView.minimumWidth: window.memory.leastSidebarWidth
            Controls.SplitView.preferredWidth: window.memory.sidebarWidth
            Controls.SplitView.maximumWidth: window.memory.mostSidebarWidth
            sidebar: window.sidebar
        }
        BrowserView {
            Controls.SplitView.fillWidth: true
            browser: window.browser
        }
    }

    // What takes the window over, from the back to the front, menus included.
    Item {
        parent: window.contentItem.parent
        anchors.fill: parent
        z: 1

        RoomRehearsal {
            anchors.fill: parent
            door: window.door
        }
        Loader {
            id: room
            readonly property bool coversAll: window.door.open && item !== null && (item as Item).opacity === 1
            anchors.fill: parent
            active: window.door.room !== null
            sourceComponent: ScreeningRoomView {
                room: window.door.room
                onFaded: window.door.faded()
            }
        }
        PaletteView { controller: window.jumpTo }
        TransferView {
            transfer: window.transfer
            toast: toastView
        }
        ToastView {
            id: toastView
            toasts: window.frame.toasts
        }
    }
    NameSheet { prompts: window.frame.prompts }
    ConfirmAlert { confirmations: window.frame.confirmations }
    UpdateAlert { updater: window.updater }
    WindowPanel { panels: window.panels }
    ErrorAlert { frame: window.frame }
    OnboardingSheet { onboarding: window.onboarding }
}
