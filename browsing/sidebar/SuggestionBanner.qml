// Offers to group the projects that share their first word.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: banner

    property string text
    property string button

    signal accepted()
    signal dismissed()

    implicitHeight: card.height + 2 * Theme.grid

    Rectangle {
        id: card
        x: Theme.rowInset
        y: Theme.grid
        width: parent.width - 2 * Theme.rowInset
        height: content.height + 2 * Theme.controlPadding
        radius: Theme.radiusCard
        color: Theme.raised

        Column {
            id: content
            x: Theme.controlPadding
            y: Theme.controlPadding
            width: parent.width - 2 * Theme.controlPadding
            spacing: Theme.gap

            BalancedLabel {
                available: parent.width
                style: Label.Fact
                text: banner.text
            }
            Flow {
                width: parent.width
                spacing: Theme.gap

                Button {
                    objectName: "accept"
                    width: Math.min(implicitWidth, parent.width)
                    text: banner.button
                    onClicked: banner.accepted()
                }
                Button {
                    text: qsTr("Not now")
                    kind: Button.Plain
                    onClicked: banner.dismissed()
                }
            }
        }
    }
}
