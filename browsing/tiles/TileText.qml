// The lines below a tile's picture: a name, which may have a symbol before it, and a caption.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: lines

    property alias name: name.text
    property alias nameSymbol: symbol.name
    property alias caption: caption.text
    property bool bright: false

    implicitHeight: Theme.lineBody + (caption.text ? Theme.lineFact : 0)

    Symbol {
        id: symbol
        anchors.verticalCenter: name.verticalCenter
        visible: name !== ""
        size: Theme.sizeSymbolSmall
        color: lines.bright ? Theme.text : Theme.textSoft
    }
    Label {
        id: name
        x: symbol.visible ? symbol.width + Theme.grid + 2 : 0
        width: parent.width - x
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
    Label {
        id: caption
        y: Theme.lineBody
        width: parent.width
        visible: text !== ""
        style: Label.Fact
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
}
