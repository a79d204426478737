// One of each thing that a window is drawn with, too small and too plain to be seen. What the graphics draw for the first
// time they have to prepare, which where the processor draws takes longer than to load all views: it is done meanwhile.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    // In the window's own colour, so that nothing shows.
    component Things: Row {
        Rectangle { width: 2; height: 2; color: Theme.window }
        Rectangle { width: 2; height: 2; color: Qt.alpha(Theme.window, 0.5) }
        Rectangle { width: 4; height: 4; radius: 2; color: Theme.window }
        Symbol { name: "star"; size: 4; color: Theme.window }
        Label { text: "a"; color: Theme.window; Accessible.ignored: true }
    }

    Things {}
    Item {
        width: 20
        height: 20
        clip: true
        Things {}
    }
}
