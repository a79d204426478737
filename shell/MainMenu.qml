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

    ActionMenu {
        title: "Lumbra"
        MenuAction {
            text: "Check for Updates…"
            possible: bar.updater.canCheck
            onTriggered: bar.updater.check()
        }
        T.Action {
            text: "Welcome to Lumbra…"
            onTriggered: bar.library.onboarding = true
        }
        QtObject {}
        T.Action {
            text: "Quit Lumbra"
            shortcut: "Ctrl+Q"
            onTriggered: Qt.quit()
        }
    }
    ActionMenu {
        title: "View"
        T.Action {
            text: "Jump To…"
            shortcut: "Ctrl+K"
            // A sheet that asks for something first gets its answer; the palette itself closes.
            enabled: Sheets.shown === 0 || bar.library.paletteOpen
            onTriggered: bar.library.paletteOpen = !bar.library.paletteOpen
        }
    }
    ActionMenu {
        title: "Asset"
        MenuAction {
            text: "Open in Default App"
            shortcut: "Ctrl+O"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.open()
        }
        MenuAction {
            text: "Show in Finder"
            shortcut: "Ctrl+Shift+R"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.reveal()
        }
        MenuAction {
            text: "Copy Path"
            shortcut: "Ctrl+Alt+C"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.copyPaths()
        }
        MenuAction {
            text: "Save a Copy…"
            shortcut: "Ctrl+E"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.exportFiles()
        }
        MenuAction {
            text: "Star or Unstar"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.star()
        }
        MenuAction {
            text: "Rename"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.rename()
        }
        MenuAction {
            text: "Move to Trash"
            shortcut: "Ctrl+Del"
            possible: bar.commands.hasSelection
            onTriggered: bar.commands.trash()
        }
        QtObject {}
        MenuAction {
            text: "New Folder"
            shortcut: "Ctrl+Shift+N"
            possible: bar.commands.hasFolder
            onTriggered: bar.commands.newFolder()
        }
        MenuAction {
            text: "Add Files…"
            shortcut: "Ctrl+Shift+I"
            possible: bar.commands.hasFolder
            onTriggered: bar.commands.addFiles()
        }
        QtObject {}
        MenuAction {
            text: "Toggle Preview Panel"
            shortcut: "Ctrl+Alt+I"
            onTriggered: bar.commands.toggleInspector()
        }
    }
}
