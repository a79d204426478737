// Chooses a folder: a path to type, which completes itself on Tab, and the folders there to click or to walk through
// with the arrow keys. A folder that does not exist yet can be named; whoever asked makes it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Lumbra.Look

Sheet {
    id: panel

    property string message
    property string prompt: "Choose"

    signal chosen(path: string)

    readonly property int measure: 520
    readonly property int listHeight: 264

    // Opens with the folders of `start` listed.
    function openAt(start: string) {
        field.text = start.endsWith("/") ? start : start + "/"
        open()
        field.forceActiveFocus()
        field.cursorPosition = field.length
    }

    function choose() {
        if (!listing.choosable)
            return
        close()
        chosen(listing.chosen())
    }

    text: message
    contentWidth: measure

    FolderListing {
        id: listing
        path: field.text
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Label {
            Layout.preferredWidth: panel.measure
            visible: text !== ""
            text: panel.message
            wrapMode: Text.Wrap
        }
        RowLayout {
            Layout.topMargin: Theme.grid
            spacing: Theme.grid

            IconButton {
                symbol: "arrow.up"
                text: "Enclosing folder"
                enabled: listing.parentPath !== ""
                onClicked: field.go(listing.parentPath)
            }
            TextField {
                id: field
                objectName: "folderPath"
                Layout.fillWidth: true
                focus: true
                placeholderText: "Path of a folder"

                function go(path: string) {
                    text = path
                    cursorPosition = length
                }

                onAccepted: panel.choose()
                Keys.onTabPressed: event => {
                    // Tab goes on to the next control once there is nothing to complete.
                    event.accepted = listing.completion !== text
                    if (event.accepted)
                        go(listing.completion)
                }
                Keys.onDownPressed: {
                    list.forceActiveFocus(Qt.TabFocusReason)
                    list.currentIndex = Math.min(0, list.count - 1)
                }
            }
        }
        Rectangle {
            Layout.preferredWidth: panel.measure
            Layout.preferredHeight: panel.listHeight
            radius: Theme.radiusRow
            color: Theme.well

            ListView {
                id: list
                objectName: "folderList"
                anchors.fill: parent
                anchors.margins: Theme.grid
                clip: true
                activeFocusOnTab: true
                boundsBehavior: Flickable.StopAtBounds
                model: listing
                currentIndex: -1
                T.ScrollBar.vertical: ScrollBar {}

                Keys.onReturnPressed: if (currentItem) field.go(currentItem.path)
                Keys.onEnterPressed: if (currentItem) field.go(currentItem.path)
                Keys.onRightPressed: if (currentItem) field.go(currentItem.path)
                Keys.onLeftPressed: if (listing.parentPath) field.go(listing.parentPath)

                Accessible.role: Accessible.List
                Accessible.name: "Folders"

                delegate: Item {
                    id: row

                    required property int index
                    required property string name
                    required property string path

                    objectName: name
                    width: ListView.view.width
                    height: Theme.rowHeight

                    Accessible.role: Accessible.ListItem
                    Accessible.name: name
                    Accessible.onPressAction: field.go(path)

                    Bed {
                        anchors.fill: parent
                        hovered: hover.hovered
                        pressed: tap.pressed
                        selected: row.ListView.isCurrentItem && list.activeFocus
                    }
                    Symbol {
                        id: symbol
                        x: Theme.gap
                        anchors.verticalCenter: parent.verticalCenter
                        name: "folder"
                        color: Theme.textSoft
                    }
                    Label {
                        anchors.left: symbol.right
                        anchors.leftMargin: Theme.gap
                        anchors.right: parent.right
                        anchors.rightMargin: Theme.gap
                        anchors.verticalCenter: parent.verticalCenter
                        text: row.name
                        elide: Text.ElideMiddle
                        Accessible.ignored: true
                    }
                    HoverHandler { id: hover }
                    TapHandler {
                        id: tap
                        onTapped: field.go(row.path)
                    }
                }
            }
            Label {
                anchors.centerIn: parent
                visible: list.count === 0
                text: listing.isNew ? "A new folder" : listing.choosable ? "No folders inside" : "No such folder"
                color: Theme.textFaint
            }
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.gap
            spacing: Theme.gap

            Item { Layout.fillWidth: true }
            Button {
                text: "Cancel"
                onClicked: panel.close()
            }
            Button {
                objectName: "folderChoose"
                kind: Button.Default
                text: panel.prompt
                enabled: listing.choosable
                onClicked: panel.choose()
            }
        }
    }
}
