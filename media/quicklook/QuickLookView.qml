// Shows a document as its kind is best shown, and lets it be scrolled. Lies on whatever panel its parent draws, a little
// inside of its round corners.
//
// It takes no focus and none of the keys that its surroundings need: besides the wheel and the scroll bar only Page Up,
// Page Down, Home and End move it, and Ctrl with plus, minus and 0 enlarge what has pages. Words are selected with the
// pointer or Ctrl+A, and Ctrl+C copies them while there are any.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    property alias path: reading.path
    property bool held: false // what takes the machine for a moment waits: something else moves on the screen
    property var poster // a small picture of the document that is at hand; may be null
    readonly property alias stage: reading.stage
    readonly property bool shown: reading.stage !== "nothing" && (shownStage?.shown ?? true)

    readonly property int inset: Theme.grid
    readonly property var shownStage: stageView.item // can be scrolled, enlarged, and have its words selected if it has functions for it
    readonly property bool heedsKeys: visible && enabled && Sheets.shown === 0
    readonly property bool scrolls: heedsKeys && shownStage?.scrollBy !== undefined
    readonly property bool selects: heedsKeys && shownStage?.selectAll !== undefined
    readonly property bool zooms: heedsKeys && shownStage?.zoomBy !== undefined
    readonly property var stages: ({
        pages: pages, text: text, table: table, webPage: webPage, picture: picture,
        empty: empty, locked: locked, broken: broken
    })

    Accessible.role: Accessible.Document
    Accessible.name: reading.name

    QuickLookDocument {
        id: reading
        // Whole steps, so that a window that is dragged larger does not ask for a picture at each pixel.
        readonly property int step: 256
        pictureBox: Qt.size(up(stageView.width), up(stageView.height))
        function up(points: real): int { return Math.ceil(points * view.Screen.devicePixelRatio / step) * step }
    }

    Loader {
        id: stageView
        objectName: "documentStage"
        anchors { fill: parent; margins: view.inset; bottomMargin: notice.visible ? notice.height : view.inset }
        sourceComponent: view.stages[reading.stage] ?? null
    }
    Item {
        id: notice
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: Theme.rowHeight + Theme.grid
        visible: reading.notice !== "" && (reading.stage === "text" || reading.stage === "table")

        Hairline { anchors { left: parent.left; right: parent.right; top: parent.top } }
        Label {
            objectName: "documentNotice"
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * Theme.pageMargin)
            style: Label.Fact
            text: reading.notice
        }
    }

    Component {
        id: pages
        DocumentPagesView {
            pages: reading.pages
            poster: view.poster
        }
    }
    Component {
        id: text
        DocumentTextView { document: reading }
    }
    Component {
        id: table
        DocumentTableView { table: reading.table }
    }
    Component {
        id: webPage
        Item {
            id: webStage
            readonly property bool held: view.held
            readonly property bool shown: web.shown || web.failed
            readonly property bool hasSelection: web.hasSelection
            function selectAll() { web.selectAll() }
            function copy() { web.readSelection(words => reading.copy(words)) }
            function scrollBy(parts: real) { web.scrollBy(parts) }
            function scrollToEnd(end: bool) { web.scrollToEnd(end) }

            Rectangle {
                anchors.fill: parent
                visible: web.shown
                radius: Theme.radiusPicture
                color: Theme.paper
            }
            WebStage {
                id: web
                anchors { fill: parent; margins: Theme.grid }
                page: reading.url
                folder: reading.folder
                version: reading.version
                steady: true
                held: webStage.held
                paper: Theme.paper
                onLinkActivated: link => reading.openLink(link)
            }
            DocumentState {
                anchors.fill: parent
                visible: web.failed
                title: "This page can't be shown"
            }
        }
    }
    Component {
        id: picture
        DocumentPictureView { document: reading }
    }
    Component {
        id: empty
        DocumentState { title: "This document is empty" }
    }
    Component {
        id: locked
        DocumentState {
            symbol: "eye.slash"
            title: "This document is locked"
            text: "It can't be shown without its password."
        }
    }
    Component {
        id: broken
        DocumentState {
            title: "This document can't be shown"
            text: reading.facts
        }
    }

    component DocumentState: Item {
        property alias symbol: state.symbol
        property alias title: state.title
        property alias text: state.text

        EmptyState {
            id: state
            objectName: "documentState"
            anchors.centerIn: parent
            width: parent.width
            symbol: "doc"
        }
    }

    ContextMenu {
        enabled: view.selects
        menu: Component {
            Menu {
                objectName: "documentMenu"

                MenuItem {
                    objectName: "documentCopy"
                    text: "Copy"
                    shortcutText: Shortcuts.text("Ctrl+C")
                    enabled: view.shownStage?.hasSelection ?? false
                    onTriggered: view.shownStage.copy()
                }
                MenuItem {
                    objectName: "documentSelectAll"
                    text: "Select All"
                    shortcutText: Shortcuts.text("Ctrl+A")
                    onTriggered: view.shownStage.selectAll()
                }
            }
        }
    }

    Shortcut { sequence: "PgDown"; enabled: view.scrolls; onActivated: view.shownStage.scrollBy(0.9) }
    Shortcut { sequence: "PgUp"; enabled: view.scrolls; onActivated: view.shownStage.scrollBy(-0.9) }
    Shortcut { sequence: "Home"; enabled: view.scrolls; onActivated: view.shownStage.scrollToEnd(false) }
    Shortcut { sequence: "End"; enabled: view.scrolls; onActivated: view.shownStage.scrollToEnd(true) }
    Shortcut { sequence: "Ctrl+A"; enabled: view.selects; onActivated: view.shownStage.selectAll() }
    // With nothing selected it copies the file, which is not for this view to do.
    Shortcut { sequence: "Ctrl+C"; enabled: view.selects && view.shownStage.hasSelection; onActivated: view.shownStage.copy() }
    Shortcut { sequences: ["Ctrl++", "Ctrl+="]; enabled: view.zooms; onActivated: view.shownStage.zoomBy(1.25) }
    Shortcut { sequence: "Ctrl+-"; enabled: view.zooms; onActivated: view.shownStage.zoomBy(0.8) }
    Shortcut { sequence: "Ctrl+0"; enabled: view.zooms; onActivated: view.shownStage.zoomBy(0) }
}
