// The first run: welcomes, and asks which folder the library is.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look
import Lumbra.Shell

Sheet {
    id: sheet

    required property Onboarding onboarding

    readonly property int measure: 460
    readonly property int iconSize: 72

    text: heading.text
    contentWidth: measure
    padding: Theme.blockGap
    dismissable: false
    onOpened: openLibrary.forceActiveFocus(Qt.TabFocusReason)
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() { onboarding.shown ? open() : close() }

    Connections {
        target: sheet.onboarding
        function onShownChanged() { sheet.follow() }
    }

    FilePanel {
        id: folderPanel
        kind: PathChoice.Folder
        prompt: "Use This Folder"
        message: "Choose the folder Lumbra keeps your agents' output in. Each repository gets a folder inside it."
        onChosen: paths => sheet.onboarding.choose(paths[0])
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Image {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.gap
            source: "qrc:/packaging/com.lumbra.Lumbra.svg"
            sourceSize: Qt.size(sheet.iconSize, sheet.iconSize)
            Accessible.ignored: true
        }
        Label {
            id: heading
            Layout.preferredWidth: sheet.measure
            Layout.topMargin: Theme.gap
            style: Label.Heading
            text: "Welcome to Lumbra"
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.Heading
        }
        BalancedLabel {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: best
            available: sheet.measure
            text: "Everything your coding agents render, generate and export, in one library outside your repositories."
            color: Theme.textSoft
            horizontalAlignment: Text.AlignHCenter
        }
        OnboardingStep {
            Layout.fillWidth: true
            Layout.topMargin: Theme.pageMargin
            number: 1
            title: "Library folder"

            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.gap

                Symbol {
                    name: "folder"
                    color: Theme.textSoft
                }
                Label {
                    objectName: "onboardingFolder"
                    Layout.fillWidth: true
                    text: sheet.onboarding.folder
                    color: Theme.textSoft
                    elide: Text.ElideMiddle
                }
                Button {
                    objectName: "onboardingChange"
                    text: "Change…"
                    onClicked: folderPanel.openAt(sheet.onboarding.startFolder)
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.pageMargin

            Item { Layout.fillWidth: true }
            Button {
                id: openLibrary
                objectName: "onboardingOpen"
                kind: Button.Default
                text: "Open Library"
                onClicked: sheet.onboarding.finish()
            }
        }
    }
}
