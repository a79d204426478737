// A picture within a text, no larger than it is, and no wider than the text; what it shows in words if there is none.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

Item {
    id: figure

    property alias file: image.file
    property string description

    readonly property real shownWidth: Math.min(width, image.size.width / Screen.devicePixelRatio)

    height: image.failed ? words.height
            : image.size.width > 0 ? Math.round(shownWidth * image.size.height / image.size.width) : Theme.rowHeight

    Accessible.role: Accessible.Graphic
    Accessible.name: description

    DocumentImage {
        id: image
        width: Math.round(figure.width * figure.Screen.devicePixelRatio)
    }
    FramePicture {
        width: figure.shownWidth
        height: parent.height
        image: image.image
        cornerRadius: Theme.radiusBadge
    }
    Label {
        id: words
        visible: image.failed
        width: parent.width
        style: Label.Fact
        text: figure.description
    }
}
