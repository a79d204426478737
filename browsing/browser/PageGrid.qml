// The tiles of a page: one list of rows for all pages. It has the keyboard when the browser says so, and scrolls where
// the browser asks.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Browsing
import Lumbra.Look

FocusScope {
    id: grid

    required property Browser browser

    // The page shows something else than tiles. What had the keys keeps them, for the next page and for the Tab key, which
    // from an item that is hidden leads anywhere; but it leads here no more.
    required property bool idle

    readonly property TileMetrics metrics: TileMetrics { size: grid.browser.rows.tileSize }

    // The place in view when the zoom began to change, to which it returns, until one scrolls away from it.
    property var kept: null

    // To the pictures of the first column and of the last, with which the heads of sections are flush.
    readonly property int pictureInset: Math.round(browser.rows.firstTile) + Theme.tileMargin

    // Scrolls until the row is in view; `mode` as positionViewAtIndex takes it.
    function scrollTo(row: int, mode: int) {
        if (row < 0)
            return
        kept = null
        motion.stop()
        const from = list.contentY
        list.positionViewAtIndex(row, mode)
        // A pinned head covers the row that came to the top.
        const item = list.itemAtIndex(row)
        if (item && mode === ListView.Contain && list.currentSection !== "")
            list.contentY = Math.min(list.contentY, Math.max(list.originY, item.y - list.headHeight))
        const to = list.contentY
        if (to === from)
            return
        list.contentY = from
        motion.from = from
        motion.to = to
        motion.row = row
        motion.mode = mode
        motion.start()
    }

    // Where to scroll was decided by the height of before: at the start, with a file to show, that is none.
    function resized() {
        if (motion.running)
            scrollTo(motion.row, motion.mode)
        else
            list.returnToBounds()
    }

    // The file at the top of the view, and how far below the top, or null where the page stands at its beginning.
    function placeInView(): var {
        const top = list.contentY
        if (list.atYBeginning)
            return null
        const row = list.itemAt(0, top + metrics.wellHeight / 2) ?? list.itemAt(0, top + metrics.wellHeight)
        const file = row?.row.cell(0)
        return file?.isAsset ? { file: file.url, below: row.y - top } : null
    }

    // Its row is another one by now. Not with each step of the zoom: all rows would change places each time.
    function returnToPlace() {
        const row = kept ? browser.rows.rowOf(kept.file) : -1
        if (row < 0)
            return
        list.forceLayout()
        // Scrolled to, which uses the rows that go for those that come; to be positioned there would make them anew.
        const first = list.indexAt(0, list.contentY + metrics.wellHeight)
        if (first >= 0 && !list.itemAtIndex(row))
            list.contentY += (row - first) * list.itemAtIndex(first).height
        const item = list.itemAtIndex(row)
        if (item)
            list.contentY = item.y - kept.below
        else
            list.positionViewAtIndex(row, ListView.Beginning)
        list.returnToBounds()
    }

    function takeFocusBack() {
        if (grid.activeFocus && !keyboard.activeFocus)
            keyboard.forceActiveFocus(Qt.OtherFocusReason)
    }

    // The Tab key may lead to a folder that is not in view.
    function showFocused() {
        const item = Window.activeFocusItem
        if (!item || !list.activeFocus)
            return
        const top = item.mapToItem(list.contentItem, 0, 0).y - Theme.tileMargin
        const bottom = top + item.height + 2 * Theme.tileMargin
        const least = Math.max(list.originY, bottom - list.height)
        list.contentY = Math.max(least, Math.min(list.contentY, top))
    }

    // What the right button does on a tile, for the folder that has the keyboard, or for the first file selected.
    function openMenu() {
        const focused = Window.activeFocusItem
        const tile = focused?.cell ? focused : list.itemAtIndex(browser.selectedRow())?.selectedTile()
        if (tile)
            menu.openFor(tile.cell, tile, tile.width / 2, tile.height / 2)
    }

    Window.onActiveFocusItemChanged: showFocused()
    onActiveFocusChanged: browser.gridFocused = activeFocus
    Keys.onPressed: event => {
        const menuKey = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
        if (menuKey)
            openMenu()
        event.accepted = menuKey || browser.press(event.key, event.modifiers, event.isAutoRepeat)
    }

    Binding {
        target: grid.browser.rows
        property: "width"
        value: grid.width
        when: grid.width > 0
    }
    Connections {
        target: grid.browser
        function onGridFocusedChanged() {
            if (grid.browser.gridFocused && !grid.activeFocus)
                keyboard.forceActiveFocus(Qt.OtherFocusReason)
        }
        // The keys belong to what was selected last, no longer to the folder that the focus had come to.
        function onSelectionChanged() { grid.takeFocusBack() }
        function onPageTurned() {
            grid.takeFocusBack()
            grid.kept = null
            motion.stop()
            list.positionViewAtBeginning()
        }
        function onScrollRequested(row: int, centred: bool) {
            grid.scrollTo(row, centred ? ListView.Center : ListView.Contain)
        }
    }
    Connections {
        target: grid.browser.rows
        function onResizingChanged() {
            if (!grid.browser.rows.resizing)
                grid.returnToPlace()
            else if (!grid.kept)
                grid.kept = grid.placeInView()
        }
    }
    NumberAnimation {
        id: motion

        property int row
        property int mode

        target: list
        property: "contentY"
        duration: Theme.scroll
        easing.type: Theme.easeOut
    }

    // Lets rows that are behind catch up, in each frame as many as there is time for.
    FrameAnimation {
        id: pace

        property var waiting: []

        function take(row: PageRowView) {
            waiting.push(row)
            start()
        }

        onTriggered: {
            const begin = Date.now()
            while (waiting.length > 0 && Date.now() - begin < 1) {
                const row = waiting.shift()
                if (row?.behind)
                    row.catchUp()
            }
            if (waiting.length === 0)
                stop()
        }
    }

    // What has the keyboard while no tile has it.
    KeyFocus {
        id: keyboard

        anchors.fill: parent
        focus: true
        activeFocusOnTab: !grid.idle || activeFocus

        Accessible.ignored: !activeFocusOnTab
        Accessible.role: Accessible.List
        Accessible.name: grid.browser.title
        Accessible.focusable: true

        ListView {
            id: list

            readonly property real headHeight: Theme.controlHeight + 2 * Theme.gap

            anchors.fill: parent
            visible: !grid.idle
            onVisibleChanged: grid.takeFocusBack()
            onHeightChanged: Qt.callLater(grid.resized)
            model: grid.browser.rows
            reuseItems: true
            keyNavigationEnabled: false
            highlightFollowsCurrentItem: false // unseen, it would glide about for seconds and have each step drawn
            boundsBehavior: Flickable.StopAtBounds
            // Half a screenful beyond either edge is made ahead, so that scrolling meets finished tiles. While the zoom
            // changes, which lays out every one of them, it is what the next few steps bring into sight.
            cacheBuffer: grid.browser.rows.resizing ? Math.min(60, height / 2) : Math.max(0, height / 2)

            section.property: "section"
            section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
            section.delegate: SectionHead {
                required property string section
                width: list.width
                // A list pins a head above rows of no section too, and keeps it visible.
                height: section === "" ? 0 : implicitHeight
                inset: grid.pictureInset
                header: grid.browser.headers[section]
                onActivated: grid.browser.showStarred()
            }

            // The margin of the page, of which every tile and section head has a part of its own.
            header: Item { height: Theme.pageMargin - Theme.tileMargin }

            delegate: PageRowView {
                width: list.width
                browser: grid.browser
                metrics: grid.metrics
                onMenuWanted: (cell, tile, x, y) => menu.openFor(cell, tile, x, y)
                onBehindChanged: if (behind)
                    pace.take(this)
            }

            onMovementStarted: grid.kept = null
            ScrollBar.vertical: ScrollBar { onPressedChanged: grid.kept = null }

            PressArea {
                parent: list.contentItem
                anchors.fill: undefined
                z: -1
                y: list.contentY
                width: list.width
                height: list.height
                onClicked: grid.browser.clickBackground()
            }
        }
    }

    // Selected tiles have rings of their own; where there is none, this shows that the keys are here.
    FocusRing {
        anchors.margins: Theme.grid
        shown: keyboard.byKey && grid.browser.selectedCount === 0
        surfaceRadius: Theme.radiusPicture - outset
    }
    TileMenu {
        id: menu
        browser: grid.browser
    }
}
