// Chooses on disk: files and folders to open, a folder, or a name to save under. A path to type, which completes itself
// on Tab, and the entries there to click or to walk through with the arrow keys; letters typed in the list go to the
// path. A folder that does not exist yet is made when it is chosen.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look

Sheet {
    id: panel

    property alias kind: picker.kind
    property string title: kind === PathChoice.Open ? "Choose Files and Folders"
        : kind === PathChoice.Folder ? "Choose a Folder" : "Save As"
    property string message
    property string prompt: kind === PathChoice.Save ? "Save" : "Choose"
    property var morePlaces: [] // beside the usual ones, each with `text`, `path` and `symbol`

    signal chosen(paths: var) // absolute
    signal cancelled()

    readonly property int measure: 680
    readonly property int placesWidth: 148
    readonly property int leastList: 224
    readonly property int mostList: 420
    readonly property int besideList: 300 // what the window needs for everything but the list

    // Opens with the entries of `folder` listed.
    function openAt(folder: string, name = "") {
        picker.start(folder, name)
        nameField.text = name
        open()
        if (kind === PathChoice.Save) {
            nameField.forceActiveFocus()
            nameField.select(0, picker.stemLength(name))
        } else {
            pathField.forceActiveFocus()
        }
    }

    function cancel() {
        close()
        cancelled()
    }

    text: title
    contentWidth: measure
    onDismissed: cancelled()
    onAboutToHide: picker.stop()

    PathChoice {
        id: picker
        onChosen: paths => {
            panel.close()
            panel.chosen(paths)
        }
        onReplaceAsked: (name, isFolder) => {
            replaceAlert.title = `“${name}” already exists. Do you want to replace it?`
            replaceAlert.message = isFolder ? "It is a folder. Everything in it will be replaced too."
                                            : "What it holds now will be replaced."
            replaceAlert.open()
        }
        onNameChanged: if (nameField.text !== name) nameField.text = name
    }
    Connections {
        target: picker.listing
        function onPathChanged() {
            if (pathField.text === picker.listing.path)
                return
            pathField.text = picker.listing.path
            pathField.cursorPosition = pathField.length
        }
    }
    Alert {
        id: replaceAlert
        objectName: "replaceAlert"
        confirm: "Replace"
        cancel: "Cancel"
        destructive: true
        onConfirmed: picker.replace()
        onClosed: nameField.forceActiveFocus()
    }
    NewFolderSheet {
        id: newFolderSheet
        objectName: "newFolderSheet"
        choice: picker
        onClosed: pathField.forceActiveFocus()
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Shortcut {
            sequences: ["Alt+Up"]
            enabled: panel.asks && panel.activeFocus
            onActivated: picker.goUp()
        }
        Shortcut {
            sequences: ["Ctrl+L"]
            enabled: panel.asks && panel.activeFocus
            onActivated: {
                pathField.forceActiveFocus()
                pathField.selectAll()
            }
        }
        Shortcut {
            sequences: ["Ctrl+Shift+N"]
            enabled: panel.asks && panel.activeFocus && picker.canMakeFolder
            onActivated: newFolderSheet.open()
        }

        Label {
            Layout.preferredWidth: panel.measure
            style: Label.SheetTitle
            text: panel.title
        }
        Label {
            Layout.preferredWidth: panel.measure
            visible: text !== ""
            text: panel.message
            color: Theme.textSoft
            wrapMode: Text.Wrap
        }
        TextField {
            id: nameField
            objectName: "panelName"
            Layout.fillWidth: true
            Layout.topMargin: Theme.grid
            visible: panel.kind === PathChoice.Save
            placeholderText: "Name"
            wrong: picker.problem !== ""
            onTextEdited: picker.name = text
            onAccepted: picker.choose()
        }
        RowLayout {
            Layout.topMargin: Theme.grid
            spacing: Theme.grid

            IconButton {
                objectName: "panelUp"
                symbol: "arrow.up"
                text: "Enclosing folder"
                enabled: picker.listing.parentPath !== ""
                onClicked: picker.goUp()
            }
            TextField {
                id: pathField
                objectName: "panelPath"
                Layout.fillWidth: true
                placeholderText: panel.kind === PathChoice.Open ? "Path of a file or folder" : "Path of a folder"
                onTextEdited: picker.go(text)
                onAccepted: picker.choose()
                // Tab goes on to the next control once there is nothing to complete.
                Keys.onTabPressed: event => event.accepted = picker.complete()
                Keys.onDownPressed: list.enter()
            }
            IconButton {
                objectName: "panelNewFolder"
                symbol: "folder.badge.plus"
                text: "New Folder"
                enabled: picker.canMakeFolder
                onClicked: newFolderSheet.open()
            }
        }
        RowLayout {
            Layout.preferredHeight: Math.max(panel.leastList, Math.min(panel.mostList,
                                                                       (panel.parent?.height ?? 0) - panel.besideList))
            spacing: Theme.gap

            ColumnLayout {
                Layout.fillWidth: false // as layouts would by themselves
                Layout.preferredWidth: panel.placesWidth
                Layout.alignment: Qt.AlignTop
                spacing: 0

                Repeater {
                    model: panel.morePlaces.concat(picker.places)

                    PanelPlace {
                        required property var modelData

                        objectName: "place " + text
                        Layout.fillWidth: true
                        symbol: modelData.symbol
                        text: modelData.text
                        checked: picker.listing.folder === modelData.path
                        onClicked: picker.visit(modelData.path)
                    }
                }
            }
            PanelList {
                id: list
                Layout.fillWidth: true
                Layout.fillHeight: true
                choice: picker
                onTyped: text => {
                    pathField.forceActiveFocus()
                    picker.go(picker.listing.path + text)
                }
            }
        }
        RowLayout {
            Layout.topMargin: Theme.gap
            spacing: Theme.gap

            Label {
                objectName: "panelSummary"
                Layout.fillWidth: true
                style: Label.Fact
                color: picker.problem ? Theme.danger : Theme.textSoft
                text: picker.problem || picker.summary
                elide: Text.ElideMiddle
                Accessible.role: picker.problem ? Accessible.AlertMessage : Accessible.StaticText
            }
            Button {
                objectName: "panelCancel"
                text: "Cancel"
                onClicked: panel.cancel()
            }
            Button {
                objectName: "panelChoose"
                kind: Button.Default
                text: panel.prompt
                enabled: picker.choosable
                onClicked: picker.choose()
            }
        }
    }
}
