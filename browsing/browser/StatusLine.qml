// The line below the page: how much it shows or how much is selected, and how large the tiles are.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: line

    required property Browser browser

    implicitHeight: 32
    color: Theme.pane

    Hairline { width: parent.width }
    Label {
        anchors { left: parent.left; right: zoom.left; verticalCenter: parent.verticalCenter }
        anchors.leftMargin: Theme.pageMargin
        anchors.rightMargin: Theme.pageMargin
        style: Label.Fact
        tabular: true
        text: line.browser.status
    }
    Slider {
        id: zoom
        property bool there: false
        anchors { right: parent.right; rightMargin: Theme.pageMargin; verticalCenter: parent.verticalCenter }
        text: qsTr("Thumbnail size")
        from: line.browser.settings.smallestZoom
        to: line.browser.settings.largestZoom
        stepSize: 10 // of an arrow key
        value: line.browser.settings.zoom
        // However it was moved: by the pointer, by keys, or by assistive technology.
        onValueChanged: if (there) line.browser.settings.zoom = value
        Component.onCompleted: there = true
    }
}
