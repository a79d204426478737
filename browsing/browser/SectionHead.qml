// What stands above a block of the feed, and stays at the top while the block scrolls below it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Rectangle {
    id: head

    required property var header // a SectionHeader, or undefined while its section goes

    property real inset: 0 // of what stands at either side

    signal activated()

    readonly property int space: Theme.gap

    implicitHeight: Theme.controlHeight + 2 * space
    color: Theme.window

    Accessible.role: Accessible.Heading
    Accessible.name: header ? header.title + ", " + header.detail : ""

    Row {
        id: words
        x: head.inset
        height: parent.height
        spacing: Theme.gap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: head.header?.symbol ?? ""
            size: Theme.sizeSymbol
            color: head.header?.button ? Theme.amber : Theme.textSoft
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            style: Label.Section
            text: head.header?.title ?? ""
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            visible: words.x + x + implicitWidth + Theme.gap <= more.x + more.leftPadding // or it would touch the button
            style: Label.Fact
            tabular: true
            text: head.header?.detail ?? ""
        }
    }
    Button {
        id: more
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        // Its text ends where the tiles do.
        anchors.rightMargin: head.inset - rightPadding
        visible: text !== ""
        kind: Button.Plain
        text: head.header?.button ?? ""
        onClicked: head.activated()
    }
}
