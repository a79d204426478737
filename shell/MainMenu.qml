// The menus of the window. Their shortcuts work whether or not a menu is open.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Browsing
import Lumbra.Look
import Lumbra.Shell

MenuBar {
    id: bar

    required property var library
    required property BrowserCommands commands
    required property UpdateCheck updater

    Menu {
        title: "Lumbra"
        MenuItem {
            action: MenuAction {
                text: "Check for Updates…"
                possible: bar.updater.canCheck
                onTriggered: bar.updater.check()
            }
        }
        MenuItem {
            text: "Welcome to Lumbra…"
            onTriggered: bar.library.onboarding = true
        }
        MenuSeparator {}
        MenuItem {
            action: T.Action {
                text: "Quit Lumbra"
                shortcut: "Ctrl+Q"
                onTriggered: Qt.quit()
            }
        }
    }
    Menu {
        title: "View"
        MenuItem {
            action: T.Action {
                text: "Jump To…"
                shortcut: "Ctrl+K"
                // A sheet that asks for something first gets its answer; the palette itself closes.
                enabled: Sheets.shown === 0 || bar.library.paletteOpen
                onTriggered: bar.library.paletteOpen = !bar.library.paletteOpen
            }
        }
    }
    Menu {
        title: "Asset"
        MenuItem {
            action: MenuAction {
                text: "Open in Default App"
                shortcut: "Ctrl+O"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.open()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Show in Finder"
                shortcut: "Ctrl+Shift+R"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.reveal()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Copy Path"
                shortcut: "Ctrl+Alt+C"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.copyPaths()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Save a Copy…"
                shortcut: "Ctrl+E"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.exportFiles()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Star or Unstar"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.star()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Rename"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.rename()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Move to Trash"
                shortcut: "Ctrl+Del"
                possible: bar.commands.hasSelection
                onTriggered: bar.commands.trash()
            }
        }
        MenuSeparator {}
        MenuItem {
            action: MenuAction {
                text: "New Folder"
                shortcut: "Ctrl+Shift+N"
                possible: bar.commands.hasFolder
                onTriggered: bar.commands.newFolder()
            }
        }
        MenuItem {
            action: MenuAction {
                text: "Add Files…"
                shortcut: "Ctrl+Shift+I"
                possible: bar.commands.hasFolder
                onTriggered: bar.commands.addFiles()
            }
        }
        MenuSeparator {}
        MenuItem {
            action: MenuAction {
                text: "Toggle Preview Panel"
                shortcut: "Ctrl+Alt+I"
                onTriggered: bar.commands.toggleInspector()
            }
        }
    }
}
