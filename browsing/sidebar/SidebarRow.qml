// One row of the sidebar that stands for a place: its chevron, its symbol or badge, its name, and its marks.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: line
    objectName: "row"

    required property var row // what the model holds

    property bool current: false  // where the keyboard is
    property bool targeted: false // a drag that may land here
    property DragGhost ghost: null   // what moves when the row is dragged
    property var payload: () => ""   // of a drag, asked for when it begins
    property var entries: () => []   // of the menu, asked for when it opens

    readonly property bool hovered: pointer.hovered || context.opened
    // What stands beside the name, in words.
    readonly property string told: [
        row.countHelp || row.count, row.help, row.pinned ? qsTr("Pinned") : "", row.fresh ? freshness.text : ""
    ].filter(part => part !== "").join(", ")
    readonly property int indent: 14
    readonly property int badgeSize: 18
    readonly property int markSize: 20

    // The pointer is at a mark that has a tip of its own.
    readonly property bool markTells: freshness.near || countTip.near && countTip.text !== "" || more.hovered || unpin.hovered

    signal chosen()
    signal toggled()
    signal unpinned()

    function openMenu() {
        if (row.hasMenu)
            context.openBelow(content.x + chevron.width, 0, height)
    }

    implicitHeight: Theme.rowHeight

    HoverHandler { id: pointer }

    Bed {
        id: bed
        anchors.fill: parent
        anchors.leftMargin: Theme.rowInset
        anchors.rightMargin: Theme.rowInset
        hovered: line.hovered
        pressed: mouse.pressed && !mouse.drag.active
        selected: line.row.selected
        targeted: line.targeted
    }

    MouseArea {
        id: mouse
        anchors.fill: bed
        drag.target: line.row.draggable ? line.ghost : null
        drag.smoothed: false // or what is dragged lags behind the pointer by the threshold
        // A finger scrolls the list, a mouse, which hovers before it presses, drags the row; both begin alike.
        preventStealing: pointer.hovered
        onPressed: event => {
            if (drag.target)
                line.ghost.lift(mouse, Qt.point(event.x, event.y), line.row, line.payload())
        }
        drag.onActiveChanged: if (drag.active) line.ghost.fly()
        onReleased: if (drag.active) line.ghost.land()
        onCanceled: if (drag.target) line.ghost.giveUp()
        onClicked: line.chosen()
    }

    Hint {
        anchors.fill: bed
        text: line.row.help || (name.truncated ? line.row.title : "")
        muted: context.opened || mouse.pressed || line.markTells
    }

    Item {
        id: content
        anchors.fill: bed
        anchors.leftMargin: Theme.grid + line.row.depth * line.indent
        anchors.rightMargin: Theme.gap

        Chevron {
            id: chevron
            visible: line.row.expandable
            open: line.row.expanded
            onToggle: line.toggled()
        }
        Symbol {
            x: chevron.width + (line.badgeSize - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            visible: line.row.badgeName === ""
            name: line.row.symbol
            size: Theme.sizeSymbol
            color: line.row.selected ? Theme.amber : Theme.textSoft
        }
        ProjectBadge {
            x: chevron.width
            anchors.verticalCenter: parent.verticalCenter
            visible: line.row.badgeName !== ""
            name: line.row.badgeName
            hue: line.row.hue
            size: line.badgeSize
        }
        Label {
            id: name
            x: chevron.width + line.badgeSize + Theme.gap
            width: Math.max(0, parent.width - x - (marks.width > 0 ? marks.width + Theme.gap : 0))
            anchors.verticalCenter: parent.verticalCenter
            text: Bidi.inOneLine(line.row.title)
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Row {
            id: marks
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.grid + 2

            Symbol {
                objectName: "pin mark"
                anchors.verticalCenter: parent.verticalCenter
                visible: line.row.pinned && !line.hovered
                name: "pin.fill"
                size: Theme.sizeFact
                color: Theme.textFaint
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                visible: line.row.fresh
                width: Theme.grid + 2
                height: width
                radius: width / 2
                color: Theme.amber

                Hint {
                    id: freshness
                    anchors.margins: -Theme.grid
                    text: qsTr("New in the last day")
                }
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                style: Label.Fact
                tabular: true
                text: line.row.count
                color: line.row.countAccented ? Theme.amber : Theme.textSoft
                Accessible.ignored: true

                Hint {
                    id: countTip
                    text: line.row.countHelp
                }
            }
            IconButton {
                id: more
                objectName: "more"
                visible: line.hovered && (line.row.type === "project" || line.row.type === "folder")
                width: line.markSize
                height: line.markSize
                focusPolicy: Qt.NoFocus
                symbol: "ellipsis"
                text: qsTr("More")
                onClicked: context.openBelow(content.x + marks.x + x, 0, line.height)
            }
            IconButton {
                id: unpin
                objectName: "unpin"
                visible: line.hovered && line.row.type === "pinned"
                width: line.markSize
                height: line.markSize
                focusPolicy: Qt.NoFocus
                symbol: "pin.slash"
                symbolSize: Theme.sizeSymbolSmall
                text: qsTr("Unpin")
                onClicked: line.unpinned()
            }
        }
    }

    FocusRing {
        anchors.fill: bed
        shown: line.current
        outset: 0
    }

    ContextMenu {
        id: context
        enabled: line.row.hasMenu
        // No binding: a menu that is made anew while it is read loses the entry that the keys are at.
        menu: Component {
            EntriesMenu {
                id: filled
                Component.onCompleted: filled.entries = line.entries()
            }
        }
    }
}
