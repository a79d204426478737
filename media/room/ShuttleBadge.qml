// How fast the keys J and L run the film, while they do.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Rectangle {
    id: badge

    required property PlayerEngine engine

    readonly property string text: Transport.shuttleText(engine.isPlaying, engine.shuttle)

    implicitWidth: 48 // of the longest text
    implicitHeight: Theme.lineSheet
    visible: text !== ""
    radius: height / 2
    color: Theme.amberSoft

    Label {
        anchors.centerIn: parent
        style: Label.Fact
        tabular: true
        color: Theme.amber
        text: badge.text
    }
}
