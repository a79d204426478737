// The arrow before a row that has rows below it: points down while they show. The keyboard has keys of its own for it, so
// it takes no focus.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: chevron

    property bool open: false

    signal toggle()

    implicitWidth: Theme.sizeSymbolSmall + 2
    implicitHeight: Theme.rowHeight

    Symbol {
        anchors.centerIn: parent
        name: chevron.open ? "chevron.down" : "chevron.right"
        size: Theme.sizeSymbolSmall
        color: pointer.containsMouse ? Theme.text : Theme.textFaint
    }

    MouseArea {
        id: pointer
        anchors.fill: parent
        hoverEnabled: true
        onClicked: chevron.toggle()
        // Two quick clicks close and open, as two slow ones do.
        onDoubleClicked: chevron.toggle()
    }
}
