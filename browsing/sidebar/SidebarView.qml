// The left pane: the filter, the library's pages, pins and projects, and a line about the library at its foot.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: pane

    required property Sidebar sidebar

    color: Theme.pane

    Item {
        id: top
        width: parent.width
        height: Theme.headerHeight

        SearchField {
            id: filter
            objectName: "filter"
            x: Theme.rowInset
            anchors.verticalCenter: parent.verticalCenter
            width: jump.x - x - Theme.grid
            placeholderText: qsTr("Find a project")
            text: pane.sidebar.filter
            onTextChanged: pane.sidebar.filter = text
            Keys.onDownPressed: list.enter(pane.sidebar.firstResult())
        }
        IconButton {
            id: jump
            objectName: "jump"
            anchors { right: parent.right; rightMargin: Theme.rowInset; verticalCenter: parent.verticalCenter }
            symbol: "command"
            text: qsTr("Jump to anything")
            hint: qsTr("Jump to anything (⌘K)")
            onClicked: pane.sidebar.jump()
        }
    }

    ListView {
        id: list
        objectName: "rows"

        property SidebarCell under: null // the row that files are dragged over

        function enter(row: int) {
            forceActiveFocus(Qt.TabFocusReason)
            go(row)
        }

        // To the row where the keys were last, or else to the page on view.
        function enterAgain(reason: int) {
            const selected = pane.sidebar.selectedRow()
            go(currentIndex >= 0 ? currentIndex : selected >= 0 ? selected : pane.sidebar.step(-1, 1))
            currentItem?.forceActiveFocus(reason)
        }

        property bool following: false // the keyboard, until the view is moved in another way

        function reach() {
            if (following && !scrolling.running)
                positionViewAtIndex(currentIndex, ListView.Contain)
        }

        // The view follows the keyboard, and only the keyboard: rows that come and go must not scroll it.
        function go(row: int) {
            if (row < 0)
                return
            currentIndex = row
            following = true
            scrolling.stop()
            scrolling.from = contentY
            positionViewAtIndex(row, ListView.Contain)
            scrolling.to = contentY
            scrolling.start()
        }

        // Where a row far away stands is an estimate until the rows about it have been laid out.
        onOriginYChanged: Qt.callLater(reach)
        onContentHeightChanged: Qt.callLater(reach)
        onMovementStarted: following = false

        anchors.top: top.bottom
        anchors.bottom: foot.top
        width: parent.width
        bottomMargin: Theme.gap
        clip: true
        model: pane.sidebar.rows
        reuseItems: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        activeFocusOnTab: true
        currentIndex: -1
        ScrollBar.vertical: ScrollBar { onPressedChanged: list.following = false }

        NumberAnimation on contentY {
            id: scrolling
            running: false
            duration: Theme.scroll
            easing.type: Theme.easeOut
            onFinished: list.reach()
        }

        Accessible.role: Accessible.Tree
        Accessible.name: qsTr("Sidebar")

        // The Tab key comes to the rows before the buttons in them, even if it was a button that had the keys last and so
        // gets them again. Who comes backwards, or closes the menu of a button, is meant to be on the button.
        onActiveFocusChanged: {
            const item = Window.activeFocusItem
            if (activeFocus && (item === list || item.focusReason === Qt.TabFocusReason))
                enterAgain(Qt.TabFocusReason)
        }
        Keys.onUpPressed: go(pane.sidebar.step(currentIndex, -1))
        Keys.onDownPressed: go(pane.sidebar.step(currentIndex, 1))
        Keys.onLeftPressed: go(pane.sidebar.collapse(currentIndex))
        Keys.onRightPressed: go(pane.sidebar.expand(currentIndex))
        Keys.onReturnPressed: pane.sidebar.choose(currentIndex)
        Keys.onEnterPressed: pane.sidebar.choose(currentIndex)
        Keys.onSpacePressed: pane.sidebar.choose(currentIndex)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home)
                go(pane.sidebar.step(-1, 1))
            else if (event.key === Qt.Key_End)
                go(pane.sidebar.step(count, -1))
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
                currentItem?.openMenu()
            else
                return
            event.accepted = true
        }

        delegate: SidebarCell {
            width: list.width
            sidebar: pane.sidebar
            ghost: dragGhost
            onWayBack: list.enterAgain(Qt.BacktabFocusReason)
            onFilesOverChanged: {
                if (filesOver)
                    list.under = this
                else if (list.under === this)
                    list.under = null
            }
        }

        // A drag that rests near an end of the list scrolls it: of a project, or of files, which the row tells of that
        // they are over.
        Timer {
            readonly property real pointerY: dragGhost.flying ? list.mapFromItem(dragGhost.parent, dragGhost.x, dragGhost.y).y
                                           : list.under ? list.mapFromItem(list.under, 0, list.under.filesY).y : list.height / 2
            readonly property int reach: Theme.rowHeight
            readonly property int pace: pointerY < reach ? -6 : pointerY > list.height - reach ? 6 : 0

            interval: 16
            repeat: true
            running: pace !== 0
            onTriggered: {
                list.following = false
                const last = Math.max(0, list.contentHeight + list.bottomMargin - list.height)
                list.contentY = list.originY + Math.max(0, Math.min(last, list.contentY - list.originY + pace))
            }
        }
    }

    SidebarFoot {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        sidebar: pane.sidebar
    }

    DragGhost {
        id: dragGhost
        parent: pane.Window.contentItem
    }
}
