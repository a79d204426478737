// What stands for a document that is not shown itself: the picture that it carries or the symbol of its kind, and below
// it what is known.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    required property QuickLookDocument document

    FramePicture {
        id: picture
        objectName: "documentPicture"
        anchors { fill: parent; margins: Theme.pageMargin; bottomMargin: words.height + 2 * Theme.pageMargin }
        image: view.document.picture
        cornerRadius: Theme.radiusFan
    }
    Symbol {
        anchors.centerIn: picture
        visible: !view.document.hasPicture
        name: "doc"
        size: Theme.sizeSymbolEmpty * 2
        color: Theme.textFaint
    }
    Column {
        id: words
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.pageMargin }
        spacing: Theme.grid

        Label {
            objectName: "documentName"
            width: parent.width
            style: Label.SheetTitle
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            text: view.document.name
        }
        Label {
            objectName: "documentFacts"
            width: parent.width
            style: Label.Fact
            horizontalAlignment: Text.AlignHCenter
            text: view.document.facts
        }
    }
}
