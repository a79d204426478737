// The line at the top of the screening room: the way back, where the file lies, what is known of it, and what can be
// done with it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look
import Lumbra.Media

Item {
    id: bar

    required property ScreeningRoom room

    implicitHeight: 52

    Accessible.role: Accessible.ToolBar
    Accessible.name: "Screening room"

    component BarButton: IconButton {
        implicitWidth: Theme.controlHeight + Theme.gap
        implicitHeight: implicitWidth
        symbolSize: Theme.lineBody
    }

    RowLayout {
        anchors { fill: parent; leftMargin: Theme.gap; rightMargin: Theme.gap }
        spacing: Theme.grid

        BarButton {
            objectName: "roomBack"
            symbol: "chevron.left"
            symbolSize: Theme.linePage
            text: "Back to the library (Esc)"
            onClicked: bar.room.close()
        }
        Column {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.grid

            Label {
                objectName: "roomBreadcrumb"
                width: parent.width
                style: Label.Section
                text: bar.room.breadcrumb
                elide: Text.ElideMiddle
            }
            Label {
                objectName: "roomMeta"
                width: parent.width
                style: Label.Fact
                tabular: true
                text: bar.room.meta
            }
        }
        BarButton {
            objectName: "roomStar"
            symbol: bar.room.starred ? "star.fill" : "star"
            text: bar.room.starred ? "Starred" : "Star"
            hint: "Star (S)"
            ink: bar.room.starred ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
            Accessible.checkable: true
            Accessible.checked: bar.room.starred
            onClicked: bar.room.toggleStar()
        }
        BarButton {
            id: share
            objectName: "roomShare"
            symbol: "square.and.arrow.up"
            text: "Share"
            hintMuted: ways.visible
            Accessible.role: Accessible.ButtonMenu
            onClicked: ways.popup(share, share.width - ways.implicitWidth, share.height + Theme.grid)

            Menu {
                id: ways

                MenuItem {
                    text: "Mail…"
                    onTriggered: bar.room.sendByMail()
                }
                MenuItem {
                    text: "Open With…"
                    onTriggered: bar.room.openWith()
                }
            }
        }
        BarButton {
            objectName: "roomReveal"
            symbol: "folder"
            text: "Show in Finder"
            onClicked: bar.room.reveal()
        }
        BarButton {
            objectName: "roomInfo"
            symbol: "info.circle"
            text: "Info"
            hint: "Info (I)"
            ink: bar.room.showInfo ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
            Accessible.checkable: true
            Accessible.checked: bar.room.showInfo
            onClicked: bar.room.toggleInfo()
        }
        BarButton {
            objectName: "roomQueue"
            symbol: "list.bullet"
            text: "Up next"
            ink: bar.room.showQueue ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft
            Accessible.checkable: true
            Accessible.checked: bar.room.showQueue
            onClicked: bar.room.toggleQueue()
        }
    }
}
