// Every control of the design language on one page, to be looked at.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look

Rectangle {
    id: gallery

    property bool menuShown: false
    property bool alertShown: false

    width: 1440
    height: 900
    color: Theme.window

    component Group: ColumnLayout {
        property string title
        spacing: 10
        Label { style: Label.Section; text: parent.title; color: Theme.textSoft }
    }

    Rectangle {
        id: side
        width: 264
        height: parent.height
        color: Theme.pane
        Column {
            x: 8; y: 12
            width: 248
            spacing: 2
            SearchField { width: parent.width; placeholderText: "Filter projects" }
            Item { width: 1; height: 8 }
            Repeater {
                model: [["clock", "Recent", "99+", false], ["star.fill", "Starred", "12", true], ["wand.and.stars", "Tidy", "3", false],
                    ["pin.fill", "a-very-long-project-name-that-elides-in-the-middle", "", false], ["folder", "renders", "", false], ["folder.fill", "stills", "", false]]
                Item {
                    id: row
                    required property var modelData
                    required property int index
                    width: parent.width
                    height: Theme.rowHeight
                    Bed { anchors.fill: parent; selected: row.modelData[3]; hovered: row.index === 4 }
                    Symbol { x: 8; anchors.verticalCenter: parent.verticalCenter; name: row.modelData[0]; color: row.modelData[3] ? Theme.amber : Theme.textSoft }
                    Label { x: 32; width: 170; anchors.verticalCenter: parent.verticalCenter; text: row.modelData[1]; elide: Text.ElideMiddle }
                    Label { anchors.right: parent.right; anchors.rightMargin: 8; anchors.verticalCenter: parent.verticalCenter; style: Label.Fact; tabular: true; text: row.modelData[2] }
                }
            }
        }
        Hairline { anchors.right: parent.right; vertical: true; height: parent.height }
        Row {
            x: 12
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 12
            spacing: 8
            Gauge { anchors.verticalCenter: parent.verticalCenter; value: 0.4 }
            Spinner { anchors.verticalCenter: parent.verticalCenter }
            Label { style: Label.Fact; text: "Understanding 112 of 280"; tabular: true }
        }
    }

    GridLayout {
        x: 264 + 24
        y: 24
        columns: 3
        columnSpacing: 40
        rowSpacing: 24

        Group {
            title: "Type"
            Label { style: Label.Heading; text: "Welcome to Lumbra" }
            Label { style: Label.PageTitle; text: "Recent" }
            Label { style: Label.SheetTitle; text: "Rename Project" }
            Label { text: "hero-shot-final-v12.png" }
            Label { style: Label.Fact; text: "1920 × 1080  ·  2.4 MB  ·  yesterday" }
            Label { tabular: true; text: "1111111111 tabular" }
            Label { tabular: true; text: "0808080808 tabular"; }
            Label { text: "1111111111 plain" }
            Label { Layout.preferredWidth: 300; wrapMode: Text.Wrap; color: Theme.textSoft; text: "Everything your coding agents render, generate and export, in one library outside your repositories." }
        }
        Group {
            title: "Buttons"
            RowLayout {
                Button { text: "Cancel" }
                Button { id: def; text: "Open Library"; kind: Button.Default }
                Button { text: "Move to Trash"; kind: Button.Destructive }
                Button { text: "Undo"; kind: Button.Plain }
            }
            RowLayout {
                Button { text: "Disabled"; enabled: false }
                Button { text: "New Folder"; symbol: "folder.badge.plus" }
                Button { objectName: "focused"; text: "Focused" }
            }
            RowLayout {
                IconButton { symbol: "plus"; text: "Add" }
                IconButton { symbol: "gearshape"; text: "Options" }
                IconButton { symbol: "sidebar.right"; text: "Details"; checked: true; checkable: true }
                IconButton { symbol: "ellipsis"; text: "More" }
            }
            TextField { Layout.fillWidth: true; placeholderText: "Name" }
            TextField { Layout.fillWidth: true; text: "untitled folder"; wrong: true }
            RowLayout {
                CheckBox { text: "Subfolders"; checked: true }
                CheckBox { text: "Off" }
                Slider { text: "Zoom"; value: 0.4 }
            }
        }
        Group {
            title: "Chips, badges"
            Row {
                spacing: 6
                Chip { label: "All"; on: true }
                Chip { label: "Images"; count: "1.5k" }
                Chip { label: "Videos"; count: "42" }
                Chip { label: "Audio"; dim: true }
            }
            Row {
                spacing: 6
                Rectangle {
                    width: 120; height: 90; radius: Theme.radiusPicture; color: "#7a6a55"
                    Badge { anchors.right: parent.right; anchors.bottom: parent.bottom; anchors.margins: 6; text: "1:07" }
                }
                Rectangle {
                    width: 120; height: 90; radius: Theme.radiusPicture; color: "#556a7a"
                    Badge { anchors.right: parent.right; anchors.bottom: parent.bottom; anchors.margins: 6; symbol: "square.stack.3d.up"; text: "12" }
                }
            }
            ProgressRow { Layout.preferredWidth: 300; text: "Copying 12 of 40"; value: 0.3; cancellable: true }
            ProgressBar { Layout.preferredWidth: 300; indeterminate: true }
            Capsule { symbol: "star.fill"; symbolColor: Theme.amber; text: "Starred hero-shot.png"; buttonText: "Undo" }
            Capsule { symbol: "doc.on.doc.fill"; text: "Copied 3 files. Paste it anywhere." }
        }
        Group {
            Layout.columnSpan: 2
            title: "Symbols"
            Flow {
                Layout.preferredWidth: 700
                spacing: 14
                Repeater {
                    model: symbolNames
                    Symbol { required property string modelData; name: modelData; size: 24; color: Theme.text }
                }
            }
            Flow {
                Layout.preferredWidth: 700
                spacing: 8
                Repeater {
                    model: symbolNames
                    Symbol { required property string modelData; name: modelData; color: Theme.textSoft }
                }
            }
        }
        EmptyState {
            Layout.preferredWidth: 380
            Layout.preferredHeight: 240
            symbol: "tray"
            title: "Nothing here yet"
            text: "Files agents save to this folder appear here as soon as they land."
            buttonText: "Add Files…"
            offset: 10
        }
    }

    Menu {
        id: menu
        MenuItem { text: "Open in Default App"; shortcutText: "Ctrl+O" }
        MenuItem { text: "Show in Files"; shortcutText: "Ctrl+Shift+R"; highlighted: true }
        MenuItem { text: "Rename"; enabled: false }
        MenuSeparator {}
        MenuItem { text: "Newest first"; checkable: true; checked: true }
        MenuItem { text: "Largest first"; checkable: true }
        Menu { title: "Color"; MenuItem { text: "Amber" } }
        MenuSeparator {}
        MenuItem { text: "Move to Trash"; destructive: true; shortcutText: "Del" }
    }
    Alert {
        id: alert
        title: "Move “night-shots” to the Trash?"
        message: "Everything in this project's folder goes to the Trash. You can put it back from there. To keep the files and just stop seeing the project, use Hide Project instead."
        confirm: "Move to Trash"
        cancel: "Cancel"
        destructive: true
    }
    // Popups need their window, which comes after the page.
    Timer {
        running: true
        interval: 1
        onTriggered: {
            if (gallery.menuShown)
                menu.popup(gallery, 760, 300)
            if (gallery.alertShown)
                alert.open()
        }
    }
}
