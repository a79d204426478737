// A message in a pill: a symbol, a text, and a button if there is something to do about it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: capsule

    property alias symbol: symbol.name
    property alias symbolColor: symbol.color
    property string text
    property string buttonText
    property string buttonHint
    property int widest: 560

    signal activated()

    // One bounce of the symbol, as the message arrives.
    function bounce() { bouncing.restart() }

    implicitWidth: row.width + 2 * Theme.pageMargin - (buttonText ? Theme.gap : 0)
    implicitHeight: Theme.capsuleHeight

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Surface {
        anchors.fill: parent
        radius: height / 2
    }
    Row {
        id: row
        x: Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap

        Symbol {
            id: symbol
            anchors.verticalCenter: parent.verticalCenter
            visible: name !== ""
            size: Theme.sizeSymbol
            color: Theme.text

            SequentialAnimation on scale {
                id: bouncing
                running: false
                NumberAnimation { to: 1.3; duration: Theme.quick; easing.type: Theme.easeOut }
                SpringNumber { to: 1 }
            }
        }
        Label {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, capsule.widest)
            text: Bidi.inOneLine(capsule.text)
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Button {
            anchors.verticalCenter: parent.verticalCenter
            objectName: "capsuleButton"
            visible: capsule.buttonText !== ""
            kind: Button.Plain
            text: capsule.buttonText
            hint: capsule.buttonHint
            onClicked: capsule.activated()
        }
    }
}
