// The lines below a tile's picture: a name, before which something may stand, and a caption.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: lines

    property string name
    property real nameInset: 0 // what stands before the name takes, the gap included
    property string caption
    property int captionElide: Text.ElideMiddle

    // The name is too long to be shown whole.
    readonly property bool elided: title.truncated

    implicitHeight: Theme.lineBody + (caption ? Theme.lineFact : 0)

    Label {
        id: title
        x: lines.nameInset
        width: parent.width - x
        text: Bidi.inOneLine(lines.name)
        horizontalAlignment: Text.AlignLeft // flush with the picture, whatever the script
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Loader {
        y: Theme.lineBody
        width: parent.width
        sourceComponent: lines.caption ? second : null
    }

    Component {
        id: second
        Label {
            style: Label.Fact
            text: Bidi.inOneLine(lines.caption)
            horizontalAlignment: Text.AlignLeft
            elide: lines.captionElide
            Accessible.ignored: true
        }
    }
}
