// Plays a film in a web view, with that one's own controls: what stands behind it shows through.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: film

    property alias path: videoPage.video // as an address
    property alias autoplay: videoPage.autoplay
    readonly property alias shown: stage.shown
    readonly property alias failed: stage.failed

    Accessible.role: Accessible.Pane
    Accessible.name: "Video"

    WebVideoPage {
        id: videoPage
        onChanged: ++stage.version
    }
    WebStage {
        id: stage
        objectName: "webStage"
        anchors.fill: parent
        page: videoPage.url
        folder: "file:///"
        film: true
        onOpening: videoPage.write()
    }
    EmptyState {
        objectName: "webFailure"
        anchors.centerIn: parent
        width: parent.width
        visible: stage.failed
        symbol: "film"
        title: "This video can't be shown"
    }
}
