// Asks for the name of a folder to make in the folder that a panel lists.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look

Sheet {
    id: sheet

    required property PathChoice choice

    readonly property int measure: 320

    text: "New Folder"
    contentWidth: measure
    onAboutToShow: field.text = ""
    onOpened: field.forceActiveFocus()

    Connections {
        target: sheet.choice
        function onFolderMade() { sheet.close() }
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Label {
            Layout.preferredWidth: sheet.measure
            style: Label.SheetTitle
            text: sheet.text
        }
        TextField {
            id: field
            objectName: "newFolderName"
            Layout.fillWidth: true
            Layout.topMargin: Theme.grid
            focus: true
            placeholderText: "Name"
            wrong: sheet.choice.problem !== ""
            onAccepted: sheet.choice.makeFolder(text)
        }
        Label {
            objectName: "newFolderProblem"
            Layout.preferredWidth: sheet.measure
            visible: text !== ""
            style: Label.Fact
            color: Theme.danger
            text: sheet.choice.problem
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.gap
            spacing: Theme.gap

            Item { Layout.fillWidth: true }
            Button {
                text: "Cancel"
                onClicked: sheet.close()
            }
            Button {
                objectName: "newFolderCreate"
                kind: Button.Default
                text: "Create"
                enabled: field.text.trim() !== ""
                onClicked: sheet.choice.makeFolder(field.text)
            }
        }
    }
}
