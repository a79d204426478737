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

    readonly property bool shown: view !== null && view.shown && !failed
    readonly property bool failed: isMissing || (view !== null && view.crashed)
    property Item view: null
    property bool isMissing: false

    // What must be done right before a page is loaded.
    signal opening()

    function scrollBy(parts: real) { if (view) view.scrollBy(parts) }
    function scrollToEnd(end: bool) { if (view) view.scrollToEnd(end) }

    function load() {
        if (page.toString() === "") {
            leave()
            return
        }
        if (!view || view.crashed) {
            view = WebViews.take(stage)
            isMissing = view === null
            if (isMissing || view.crashed)
                return
            view.anchors.fill = stage
        }
        opening()
        view.open(page, folder, paper, steady)
    }

    function leave() {
        if (view) {
            view.anchors.fill = undefined
            view.parent = null
        }
        view = null
    }

    onPageChanged: Qt.callLater(load)
    onVersionChanged: Qt.callLater(load)
    Component.onCompleted: Qt.callLater(load)
    Component.onDestruction: leave()
}
