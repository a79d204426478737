// What a page says when it has nothing to show: a symbol, a title, one sentence and at most one button, centred across
// the page, `offset` below its top.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: empty

    property alias symbol: symbol.name
    property alias title: title.text
    property alias text: sentence.text
    property string buttonText
    property int offset: 0

    signal activated()

    readonly property int measure: 380

    implicitWidth: measure
    implicitHeight: offset + column.implicitHeight

    Column {
        id: column
        y: empty.offset
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(empty.measure, empty.width - 2 * Theme.pageMargin)
        spacing: Theme.gap

        Symbol {
            id: symbol
            anchors.horizontalCenter: parent.horizontalCenter
            visible: name !== ""
            size: Theme.sizeSymbolEmpty
            color: Theme.textFaint
        }
        Item { width: 1; height: Theme.grid; visible: symbol.visible }
        Label {
            id: title
            width: parent.width
            style: Label.SheetTitle
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        BalancedLabel {
            id: sentence
            anchors.horizontalCenter: parent.horizontalCenter
            available: parent.width
            visible: text !== ""
            color: Theme.textSoft
            horizontalAlignment: Text.AlignHCenter
        }
        Item { width: 1; height: Theme.grid; visible: button.visible }
        Button {
            id: button
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            text: empty.buttonText
            onClicked: empty.activated()
        }
    }
}
