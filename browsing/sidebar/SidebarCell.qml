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
    readonly property bool targeted: target.containsDrag || files.containsDrag
    readonly property real filesY: files.drag.y // of files over the row
    readonly property bool filesOver: files.containsDrag

    readonly property SidebarRow place: loader.item as SidebarRow // none for a title and the like
    readonly property bool expandable: row.expandable
    readonly property bool expanded: row.expanded

    function openMenu() { place?.openMenu() }

    function payloadOf(drag: DragEvent): string {
        return drag.source?.payload ?? drag.text
    }

    // The Tab key goes back from the first of the buttons in the rows.
    signal wayBack()

    implicitHeight: loader.height

    // Here and not on the row in it: the list gives the keyboard to this item.
    Accessible.ignored: !place
    Accessible.role: Accessible.TreeItem
    Accessible.name: row.title
    Accessible.description: place?.told ?? ""
    Accessible.selectable: true
    Accessible.selected: row.selected
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: sidebar.choose(index)
    Accessible.onToggleAction: sidebar.toggle(index)

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
    FileDropArea {
        id: files
        anchors.fill: parent
        possible: cell.row.takesFiles
        onFilesDropped: urls => cell.sidebar.dropFiles(cell.index, urls)
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
                Keys.onBacktabPressed: cell.wayBack()
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
