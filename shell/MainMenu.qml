// The menus of the window. Their shortcuts work whether or not a menu is open.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic as Controls
import Lumbra.Browsing
import Lumbra.Look

MenuBar {
    id: bar

    required property QtObject library
    required property BrowserCommands commands

    Menu {
        title: "Lumbra"
        MenuItem {
            text: "Welcome to Lumbra…"
            onTriggered: bar.library.onboarding = true
        }
        MenuSeparator {}
        MenuItem {
            action: Controls.Action {
                text: "Quit Lumbra"
                shortcut: StandardKey.Quit
                onTriggered: Qt.quit()
            }
        }
    }
    Menu {
        title: "Asset"
        MenuItem {
            action: Controls.Action {
                text: "Open in Default App"
                shortcut: "Ctrl+O"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.open()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Show in Finder"
                shortcut: "Ctrl+Shift+R"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.reveal()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Copy Path"
                shortcut: "Ctrl+Alt+C"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.copyPaths()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Save a Copy…"
                shortcut: "Ctrl+E"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.exportFiles()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Star or Unstar"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.star()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Rename"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.rename()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Move to Trash"
                shortcut: "Ctrl+Del"
                enabled: bar.commands.hasSelection
                onTriggered: bar.commands.trash()
            }
        }
        MenuSeparator {}
        MenuItem {
            action: Controls.Action {
                text: "New Folder"
                shortcut: "Ctrl+Shift+N"
                enabled: bar.commands.hasFolder
                onTriggered: bar.commands.newFolder()
            }
        }
        MenuItem {
            action: Controls.Action {
                text: "Add Files…"
                shortcut: "Ctrl+Shift+I"
                enabled: bar.commands.hasFolder
                onTriggered: bar.commands.addFiles()
            }
        }
    }
}
