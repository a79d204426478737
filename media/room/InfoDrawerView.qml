// The drawer beside the stage: what is known of the file on show, and what can be done with it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media

Item {
    id: view
    objectName: "drawer"

    required property ScreeningRoom room

    readonly property int labelWidth: 84

    implicitWidth: 320

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Info")

    InfoDrawer {
        id: drawer
        room: view.room
    }
    Surface {
        anchors.fill: parent
        radius: Theme.radiusSheet
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }

    Item {
        id: head
        x: Theme.pageMargin
        width: parent.width - x - Theme.gap
        height: Theme.headerHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            style: Label.Section
            text: qsTr("Info")
            Accessible.role: Accessible.Heading
        }
        Row {
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: Theme.grid

            IconButton {
                objectName: "drawerStar"
                symbol: view.room.starred ? "star.fill" : "star"
                ink: view.room.starred ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
                text: qsTr("Star")
                Accessible.checkable: true
                Accessible.checked: view.room.starred
                onClicked: drawer.toggleStar()
            }
            IconButton {
                objectName: "drawerClose"
                symbol: "xmark"
                text: qsTr("Close")
                onClicked: drawer.close()
            }
        }
    }
    Hairline {
        id: line
        anchors.top: head.bottom
        width: parent.width
    }
    Flickable {
        id: body
        anchors { top: line.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
        contentHeight: column.height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ScrollBar {}

        Column {
            id: column
            width: parent.width
            topPadding: Theme.controlPadding
            bottomPadding: Theme.gap

            Repeater {
                model: drawer.facts

                Item {
                    id: fact

                    required property var modelData

                    x: Theme.pageMargin
                    width: column.width - 2 * x
                    height: Theme.lineBody + Theme.grid

                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.label + ": " + modelData.value

                    Label {
                        id: label
                        width: view.labelWidth
                        style: Label.Fact
                        text: fact.modelData.label
                        Accessible.ignored: true
                    }
                    Label {
                        id: value
                        objectName: fact.modelData.label
                        anchors { left: label.right; right: parent.right }
                        style: Label.Fact
                        tabular: !fact.modelData.isPath
                        color: fact.modelData.isPath ? Theme.textSoft : Theme.text
                        elide: fact.modelData.isPath ? Text.ElideMiddle : Text.ElideRight
                        text: fact.modelData.value
                        Accessible.ignored: true
                    }
                    Hint {
                        text: value.truncated ? fact.modelData.value : ""
                        control: fact
                    }
                }
            }
            Item {
                width: parent.width
                height: Theme.pageMargin

                Hairline {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width
                }
            }
            Repeater {
                model: drawer.actions

                DrawerAction {
                    required property int index
                    required property var modelData

                    objectName: "action" + index
                    x: Theme.gap
                    width: column.width - 2 * x
                    text: modelData.title
                    symbol: modelData.symbol
                    destructive: modelData.destructive
                    onClicked: modelData.run()
                    // A drawer that is too low for all of them shows the one that the keyboard is on.
                    onActiveFocusChanged: if (activeFocus) body.reveal(this)
                }
            }
        }

        function reveal(item: Item) {
            contentY = Math.max(Math.min(contentY, item.y), item.y + item.height - height)
        }
    }
}
