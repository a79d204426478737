// The toast at the foot of the window: slides in from below as it fades in, and goes the same way.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Shell

Capsule {
    id: view

    required property Toasts toasts

    readonly property int rise: 44 // above the window's edge, where it rests
    property real lift: toasts.shown ? rise + height : 0

    anchors.horizontalCenter: parent.horizontalCenter
    y: parent.height - lift // itself not animated: a window that gets another size would set it in motion
    opacity: toasts.shown ? 1 : 0
    visible: opacity > 0
    enabled: toasts.shown
    symbol: toasts.symbol
    symbolColor: toasts.amber ? Theme.amber : Theme.text
    text: toasts.text
    buttonText: toasts.undoable ? "Undo" : ""
    buttonHint: "Undo (Ctrl+Z)"
    onActivated: toasts.undo()

    Behavior on lift { SpringNumber {} }
    Behavior on opacity { SpringNumber {} }

    // The button is gone before anyone could come to it with the Tab key.
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: view.toasts.shown && view.toasts.undoable && Sheets.shown === 0
        onActivated: view.toasts.undo()
    }
    Connections {
        target: view.toasts
        function onAppeared() { view.bounce() }
    }
}
