// The entries of a panel's folder: clicks and keys go to the choice, which says what is selected.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

Rectangle {
    id: frame

    required property PathChoice choice

    readonly property int slow: 400 // milliseconds after which a folder that is still read says so
    readonly property int page: Math.max(1, Math.floor(list.height / Theme.rowHeight) - 1)

    // Letters that were typed here and belong to the path.
    signal typed(text: string)

    radius: Theme.radiusRow
    color: Theme.well
    border.width: list.activeFocus ? Theme.ring : 0
    border.color: Theme.amber

    // The keys go here, to the first entry if nothing is selected.
    function enter() {
        list.forceActiveFocus(Qt.TabFocusReason)
        if (choice.currentRow < 0)
            choice.move(1)
    }

    ListView {
        id: list
        objectName: "panelList"
        anchors.fill: parent
        anchors.margins: Theme.grid
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightMoveDuration: 0
        reuseItems: true
        model: frame.choice.listing
        currentIndex: frame.choice.currentRow
        T.ScrollBar.vertical: ScrollBar {}

        Accessible.role: Accessible.List
        Accessible.name: "Files and folders"

        Keys.onPressed: event => {
            event.accepted = true
            switch (event.key) {
            case Qt.Key_Up: return frame.choice.move(-1, event.modifiers)
            case Qt.Key_Down: return frame.choice.move(1, event.modifiers)
            case Qt.Key_PageUp: return frame.choice.move(-frame.page, event.modifiers)
            case Qt.Key_PageDown: return frame.choice.move(frame.page, event.modifiers)
            case Qt.Key_Home: return frame.choice.move(-count, event.modifiers)
            case Qt.Key_End: return frame.choice.move(count, event.modifiers)
            case Qt.Key_Return:
            case Qt.Key_Enter:
                return event.modifiers & Qt.ControlModifier ? frame.choice.choose()
                                                            : frame.choice.activate(currentIndex)
            case Qt.Key_Right:
                if (currentItem?.isFolder)
                    frame.choice.activate(currentIndex)
                return
            case Qt.Key_Left:
            case Qt.Key_Backspace:
                return frame.choice.goUp()
            }
            if (event.modifiers & Qt.ControlModifier && event.key === Qt.Key_A)
                return frame.choice.selectAll()
            if (event.modifiers & Qt.ControlModifier && event.key === Qt.Key_Space)
                return frame.choice.press(currentIndex, Qt.ControlModifier)
            if (!(event.modifiers & (Qt.ControlModifier | Qt.AltModifier)) && /^[^\u0000-\u001f\u007f]$/u.test(event.text))
                return frame.typed(event.text)
            event.accepted = false
        }

        delegate: Item {
            id: row

            required property int index
            required property string name
            required property bool isFolder
            readonly property bool selected: frame.choice.selectedRows.includes(index)

            objectName: name
            width: ListView.view.width
            height: Theme.rowHeight

            Accessible.role: Accessible.ListItem
            Accessible.name: name
            Accessible.selectable: true
            Accessible.selected: selected
            Accessible.onPressAction: frame.choice.activate(index)

            Bed {
                anchors.fill: parent
                hovered: hover.hovered
                pressed: tap.pressed
                selected: row.selected
            }
            Symbol {
                id: symbol
                x: Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                name: row.isFolder ? "folder" : "doc"
                color: row.isFolder ? Theme.textSoft : Theme.textFaint
            }
            Label {
                anchors.left: symbol.right
                anchors.leftMargin: Theme.gap
                anchors.right: parent.right
                anchors.rightMargin: Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                text: Bidi.inOneLine(row.name)
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            FocusRing {
                shown: list.activeFocus && row.ListView.isCurrentItem && !row.selected
                surfaceRadius: Theme.radiusRow
                outset: 0
            }
            HoverHandler { id: hover }
            TapHandler {
                id: tap
                onTapped: {
                    list.forceActiveFocus(Qt.MouseFocusReason)
                    frame.choice.press(row.index, point.modifiers)
                }
                onDoubleTapped: frame.choice.activate(row.index)
            }
        }

        footer: Label {
            width: ListView.view.width
            height: visible ? Theme.rowHeight : 0
            visible: frame.choice.listing.cut
            leftPadding: Theme.gap
            style: Label.Fact
            color: Theme.textFaint
            text: "There is more. Type the beginning of a name to see what fits."
        }
    }
    Label {
        objectName: "panelEmpty"
        anchors.centerIn: parent
        visible: list.count === 0
        color: Theme.textFaint
        text: {
            const listing = frame.choice.listing
            if (listing.reading)
                return patience.running ? "" : "Reading the folder…"
            switch (listing.target) {
            case FolderListing.New: return frame.choice.kind === PathChoice.Folder ? "A new folder" : "Nothing is called so"
            case FolderListing.Nothing: return "No such folder"
            }
            return frame.choice.kind === PathChoice.Folder ? "No folders inside" : "Nothing inside"
        }
    }
    Timer {
        id: patience
        interval: frame.slow
        running: frame.choice.listing.reading
    }
}
