// Asks for a name: of a new folder, of a group, of whatever gets another one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look
import Lumbra.Browsing

Sheet {
    id: sheet

    required property NamePrompts prompts

    readonly property int measure: 320

    text: prompts.title
    contentWidth: measure
    onDismissed: prompts.dismiss()
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() {
        if (!prompts.asking)
            return close()
        field.text = prompts.name
        open()
        field.forceActiveFocus()
        field.selectAll()
    }

    Connections {
        target: sheet.prompts
        function onPromptChanged() { sheet.follow() }
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Label {
            Layout.preferredWidth: sheet.measure
            style: Label.SheetTitle
            text: sheet.prompts.title
            elide: Text.ElideMiddle
        }
        TextField {
            id: field
            objectName: "nameField"
            Layout.fillWidth: true
            Layout.topMargin: Theme.grid
            focus: true
            placeholderText: "Name"
            wrong: sheet.prompts.problem !== ""
            onTextChanged: sheet.prompts.name = text
            onAccepted: sheet.prompts.commit()
        }
        Label {
            objectName: "nameProblem"
            Layout.preferredWidth: sheet.measure
            visible: text !== ""
            style: Label.Fact
            color: Theme.danger
            text: sheet.prompts.problem
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
                onClicked: sheet.prompts.dismiss()
            }
            Button {
                objectName: "nameConfirm"
                kind: Button.Default
                text: sheet.prompts.confirm
                enabled: sheet.prompts.canCommit
                onClicked: sheet.prompts.commit()
            }
        }
    }
}
