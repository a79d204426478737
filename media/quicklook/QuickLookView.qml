// Shows a document as its kind is best shown, and lets it be scrolled. Lies on whatever panel its parent draws, a little
// inside of its round corners.
//
// It takes no focus and none of the keys that its surroundings need: besides the wheel and the scroll bar only Page Up,
// Page Down, Home and End move it, and Ctrl with plus, minus and 0 enlarge what has pages.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    property alias path: reading.path
    readonly property alias stage: reading.stage
    readonly property bool shown: reading.stage !== "nothing" && (stageView.item?.shown ?? true)

    readonly property int inset: Theme.grid
    readonly property bool heedsKeys: visible && enabled && Sheets.shown === 0
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
        DocumentPagesView { pages: reading.pages }
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
            readonly property bool shown: web.shown || web.failed
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
                paper: Theme.paper
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
    component PageKey: Shortcut {
        enabled: view.heedsKeys && stageView.item?.scrollBy !== undefined
    }
    component ZoomKey: Shortcut {
        enabled: view.heedsKeys && stageView.item?.zoomBy !== undefined
    }

    PageKey { sequence: "PgDown"; onActivated: stageView.item.scrollBy(0.9) }
    PageKey { sequence: "PgUp"; onActivated: stageView.item.scrollBy(-0.9) }
    PageKey { sequence: "Home"; onActivated: stageView.item.scrollToEnd(false) }
    PageKey { sequence: "End"; onActivated: stageView.item.scrollToEnd(true) }
    ZoomKey { sequences: ["Ctrl++", "Ctrl+="]; onActivated: stageView.item.zoomBy(1.25) }
    ZoomKey { sequence: "Ctrl+-"; onActivated: stageView.item.zoomBy(0.8) }
    ZoomKey { sequence: "Ctrl+0"; onActivated: stageView.item.zoomBy(0) }
}
