// A button that is only a symbol. Its `text` is its name for assistive technology, and its tool tip unless `hint` says
// more.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.Button {
    id: control

    property string symbol
    property string hint
    property bool hintMuted: false
    property int symbolSize: Theme.sizeSymbol
    property color ink: checked ? Theme.amber : hovered || down ? Theme.text : Theme.textSoft

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : Theme.dim
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: hint
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Symbol {
        name: control.symbol
        size: control.symbolSize
        color: control.ink
    }

    background: Bed {
        radius: Theme.radiusControl
        hovered: control.hovered
        pressed: control.down
    }

    FocusRing { shown: control.visualFocus; outset: 0 }
    Hint {
        text: control.hint || control.text
        control: control
        muted: control.hintMuted
    }
}
