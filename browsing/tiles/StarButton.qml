// The star on a file's picture, on a bed, since amber alone is lost on a bright one. It comes and goes with the pointer
// unless the file is starred.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.AbstractButton {
    id: button

    required property bool starred
    required property bool near // the pointer is over the file

    property bool lit: false
    property real light: lit ? 1 : 0
    Behavior on light { EaseNumber {} }
    Component.onCompleted: lit = Qt.binding(() => button.near)

    // A file that wears its star has it at once, also where another file has the tile now.
    opacity: starred ? 1 : light
    visible: lit || opacity > 0

    implicitWidth: Theme.sizeSymbolSmall + Theme.gap
    implicitHeight: implicitWidth
    focusPolicy: Qt.NoFocus // its key is S, on whatever is selected
    hoverEnabled: true
    text: starred ? qsTr("Unstar (S)") : qsTr("Star (S)")

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.ignored: !enabled
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
