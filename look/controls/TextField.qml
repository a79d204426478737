// A line of text to type in, with a faint placeholder. A field that holds a name selects it whole when it gets the
// focus: `selectsAll`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Lumbra.Look

T.TextField {
    id: control

    property string symbol
    property bool clearable: false
    property bool selectsAll: false
    property bool wrong: false // what stands in it will be refused

    implicitWidth: 200
    implicitHeight: Theme.controlHeight
    leftPadding: symbol ? Theme.sizeSymbol + Theme.gap + Theme.grid : Theme.gap
    rightPadding: clearable && text ? Theme.sizeSymbol + Theme.gap + Theme.grid : Theme.gap
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.text
    placeholderTextColor: Theme.textFaint
    selectionColor: Theme.amberSelection
    selectedTextColor: Theme.text
    selectByMouse: true
    opacity: enabled ? 1 : Theme.dim
    font.family: Theme.family
    font.pixelSize: Theme.sizeBody

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    onActiveFocusChanged: if (activeFocus && selectsAll) selectAll()

    background: Rectangle {
        radius: Theme.radiusControl
        color: control.activeFocus ? Theme.well : control.hovered ? Theme.controlHover : Theme.control
        border.width: control.activeFocus || control.wrong ? Theme.ring : 1 / Screen.devicePixelRatio
        border.color: control.wrong ? Theme.danger : control.activeFocus ? Theme.amber : Theme.line
        Behavior on color { EaseColor {} }
    }

    Label {
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height
        visible: !control.text && !control.preeditText
        text: control.placeholderText
        color: control.placeholderTextColor
        font.pixelSize: control.font.pixelSize
        lineHeightMode: Text.ProportionalHeight
        lineHeight: 1
        Accessible.ignored: true
    }
    Symbol {
        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        visible: control.symbol !== ""
        name: control.symbol
        color: Theme.textFaint
    }
    IconButton {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: control.clearable && control.text !== ""
        symbol: "xmark.circle.fill"
        symbolSize: Theme.sizeSymbolSmall
        text: qsTr("Clear")
        focusPolicy: Qt.NoFocus
        onClicked: control.clear()
    }
}
