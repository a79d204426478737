// A local page where it stands: takes a web view while it has a page to show, and gives it back.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: stage

    property url page
    property url folder // the page may use the files in and below it
    property color paper: Theme.clear
    property int version: 0 // another one loads the page anew
    property bool steady: false // what was shown of the page stays until then
    property bool held: false // the first view is not made yet: something else moves on the screen
    property bool film: false // the page plays one, and is shown once that has a picture

    readonly property bool shown: (webPage?.shown ?? false) && !failed
    readonly property bool hasSelection: webPage?.hasSelection ?? false
    readonly property bool failed: isMissing || (webPage?.crashed ?? false)
    property Item view: null
    readonly property var webPage: view // as what it is: its type's name would load the web engine with this view
    property bool isMissing: false

    // What must be done right before a page is loaded.
    signal opening()

    // A link to another page was followed.
    signal linkActivated(link: string)

    function selectAll() { webPage?.selectAll() }
    function readSelection(then: var) { webPage?.readSelection(then) }
    function scrollBy(parts: real) { webPage?.scrollBy(parts) }
    function scrollToEnd(end: bool) { webPage?.scrollToEnd(end) }

    function load() {
        if (page.toString() === "") {
            leave()
            return
        }
        if (held && !WebViews.ready)
            return
        if (!view || view.crashed) {
            view = WebViews.take(stage)
            isMissing = view === null
            if (isMissing || view.crashed)
                return
            view.anchors.fill = stage
        }
        opening()
        view.open(page, folder, paper, steady, film)
    }

    function leave() {
        if (view) {
            view.anchors.fill = undefined
            view.parent = null
        }
        view = null
    }

    Connections {
        target: stage.webPage
        function onLinkActivated(link: string) { stage.linkActivated(link) }
    }

    onPageChanged: Qt.callLater(load)
    onVersionChanged: Qt.callLater(load)
    onHeldChanged: if (!view) Qt.callLater(load)
    Component.onCompleted: Qt.callLater(load)
    Component.onDestruction: leave()
}
