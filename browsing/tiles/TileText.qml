// The lines below a tile's picture: a name, which may have a symbol before it, and a caption.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: lines

    property alias name: title.text
    property alias nameSymbol: mark.name
    property alias caption: fact.text

    // The name is too long to be shown whole.
    readonly property bool elided: title.truncated

    implicitHeight: Theme.lineBody + (fact.text ? Theme.lineFact : 0)

    Symbol {
        id: mark
        anchors.verticalCenter: title.verticalCenter
        visible: lines.nameSymbol !== ""
        size: Theme.sizeSymbolSmall
        color: Theme.textSoft
    }
    Label {
        id: title
        x: mark.visible ? mark.width + Theme.grid + 2 : 0
        width: parent.width - x
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
    Label {
        id: fact
        y: Theme.lineBody
        width: parent.width
        visible: text !== ""
        style: Label.Fact
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
}
