// What is known of the selection, beside the page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look
import Lumbra.Media

Rectangle {
    id: pane

    required property Browser browser

    readonly property int count: browser.selectedCount
    readonly property int paneWidth: 300
    readonly property int pictureHeight: 200

    implicitWidth: edge.width + paneWidth
    color: Theme.pane

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Details")

    // The spring carries the pane a little too far.
    Rectangle {
        x: parent.width
        width: Theme.pageMargin
        height: parent.height
        color: parent.color
    }
    Hairline {
        id: edge
        vertical: true
        height: parent.height
    }
    EmptyState {
        x: edge.width
        y: Math.max(0, Math.round((pane.height - implicitHeight) / 2))
        width: pane.paneWidth
        visible: pane.count === 0
        symbol: "photo.stack"
        title: qsTr("Nothing selected")
        text: qsTr("Click something to see it here. Double-click or press Space to play it.")
    }
    Loader {
        x: edge.width + Theme.pageMargin
        y: Theme.pageMargin
        width: pane.paneWidth - 2 * Theme.pageMargin
        active: pane.count > 0
        sourceComponent: Column {
            spacing: Theme.controlPadding

            Rectangle {
                width: parent.width
                height: pane.pictureHeight
                radius: Theme.radiusCard
                color: Theme.well

                ThumbnailView {
                    anchors.fill: parent
                    asset: pane.browser.firstSelected
                    size: parent.width
                    backdrop: true
                    cornerRadius: Theme.radiusCard
                }
            }
            Label {
                objectName: "inspectedName"
                width: parent.width
                style: Label.Section
                text: pane.count === 1 ? Bidi.inOneLine(pane.browser.firstName) : qsTr("%1 items").arg(pane.count)
                wrapMode: Text.WrapAnywhere
                maximumLineCount: 4
            }
        }
    }
}
