// Plays a film in a web view, with that one's own controls: what stands behind it shows through. Until the page has a
// picture the film's first stands in its place, as large as the page will show it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Item {
    id: film

    property alias path: videoPage.video // as an address
    property alias autoplay: videoPage.autoplay
    property alias held: stage.held
    readonly property alias shown: stage.shown
    readonly property alias failed: stage.failed

    Accessible.role: Accessible.Pane
    Accessible.name: "Video"

    WebVideoPage {
        id: videoPage
        onChanged: ++stage.version
    }
    FilmPoster {
        id: first
        source: videoPage.video
        // Larger than any stage, so that a picture that was made smaller is larger than this one too.
        box: Qt.size(Math.ceil(film.Screen.width * film.Screen.devicePixelRatio),
                     Math.ceil(film.Screen.height * film.Screen.devicePixelRatio))
    }
    StagePicture {
        objectName: "webPoster"
        anchors.fill: parent
        visible: !stage.shown && !stage.failed
        enlarges: false
        image: first.image
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
