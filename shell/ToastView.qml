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

    anchors.horizontalCenter: parent.horizontalCenter
    y: parent.height - (toasts.shown ? rise + height : 0)
    opacity: toasts.shown ? 1 : 0
    visible: opacity > 0
    enabled: toasts.shown
    symbol: toasts.symbol
    symbolColor: toasts.amber ? Theme.amber : Theme.text
    text: toasts.text
    buttonText: toasts.undoable ? "Undo" : ""
    onActivated: toasts.undo()

    Behavior on y { SpringNumber {} }
    Behavior on opacity { SpringNumber {} }

    Connections {
        target: view.toasts
        function onAppeared() { view.bounce() }
    }
}
