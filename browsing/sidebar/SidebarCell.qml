// One line of the sidebar's list, whatever it is: draws it after its type and takes what is dropped on it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: cell

    required property Sidebar sidebar
    required property DragGhost ghost
    required property int index
    required property var row
    readonly property bool targeted: target.containsDrag

    function openMenu() {
        if (loader.sourceComponent === placeRow)
            (loader.item as SidebarRow).openMenu()
    }

    function payloadOf(drag: DragEvent): string {
        return drag.source?.payload ?? drag.text
    }

    implicitHeight: loader.height

    Component.onCompleted: sidebar.appeared(index)
    ListView.onReused: sidebar.appeared(index)

    Loader {
        id: loader
        width: parent.width
        sourceComponent: {
            switch (cell.row.type) {
            case "pinnedTitle": return title
            case "projectsHeader": return header
            case "suggestion": return banner
            case "noMatch": return noMatch
            default: return placeRow
            }
        }
    }

    DropArea {
        id: target
        anchors.fill: parent
        onEntered: drag => drag.accepted = cell.sidebar.accepts(cell.index, cell.payloadOf(drag))
        onDropped: drop => cell.sidebar.drop(cell.index, cell.payloadOf(drop))
    }

    Component {
        id: placeRow

        SidebarRow {
            row: cell.row
            current: cell.activeFocus // the list gives it to its current item
            targeted: cell.targeted
            ghost: cell.ghost
            payload: () => cell.sidebar.dragPayload(cell.index)
            entries: () => cell.sidebar.menu(cell.index)
            onChosen: cell.sidebar.choose(cell.index)
            onToggled: cell.sidebar.toggle(cell.index)
            onUnpinned: cell.sidebar.unpin(cell.index)
        }
    }

    Component {
        id: title
        SidebarHeading { title: cell.row.title }
    }

    Component {
        id: header

        SidebarHeading {
            title: cell.row.title
            targeted: cell.targeted

            MenuIconButton {
                symbol: "plus"
                text: qsTr("New project or group")
                entries: () => cell.sidebar.newMenu()
            }
        }
    }

    Component {
        id: banner

        SuggestionBanner {
            text: cell.row.title
            button: cell.row.button
            onAccepted: cell.sidebar.acceptSuggestion()
            onDismissed: cell.sidebar.dismissSuggestion()
        }
    }

    Component {
        id: noMatch

        Label {
            leftPadding: Theme.rowInset + Theme.gap
            rightPadding: leftPadding
            text: cell.row.title
            color: Theme.textSoft
            wrapMode: Text.Wrap
            elide: Text.ElideNone
        }
    }
}
