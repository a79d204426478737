// The line below the page: how much it shows or how much is selected, and how large the tiles are.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: line

    required property Browser browser

    readonly property int smallest: 100
    readonly property int largest: 360

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
        anchors { right: parent.right; rightMargin: Theme.pageMargin; verticalCenter: parent.verticalCenter }
        text: qsTr("Thumbnail size")
        from: line.smallest
        to: line.largest
        value: line.browser.settings.zoom
        onMoved: line.browser.settings.zoom = value
    }
}
