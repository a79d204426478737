// The star on a file's picture, on a bed, since amber alone is lost on a bright one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.AbstractButton {
    id: button

    required property bool starred

    implicitWidth: Theme.sizeSymbolSmall + Theme.gap
    implicitHeight: implicitWidth
    focusPolicy: Qt.NoFocus // its key is S, on whatever is selected
    hoverEnabled: true
    text: starred ? qsTr("Unstar (S)") : qsTr("Star (S)")

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()

    contentItem: Symbol {
        name: button.starred ? "star.fill" : "star"
        size: Theme.sizeSymbolSmall
        color: button.starred ? Theme.amber : Theme.textOnBadge
    }

    background: Rectangle {
        radius: width / 2
        color: Theme.badgeBed

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: button.down ? Theme.press : button.hovered ? Theme.hover : Theme.clear
        }
    }

    Hint { text: button.text; control: button }
}
