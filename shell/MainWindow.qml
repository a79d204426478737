// The one window. It stands as soon as the application runs, empty, so that the graphics are ready by the time that its
// contents are.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic as Controls
import Lumbra.Look

Controls.ApplicationWindow {
    id: window

    // As WindowContents.qml and WindowOverlays.qml have them; their types are not loaded here.
    property QtObject contents: null
    property QtObject overlays: null

    title: contents?.title ?? Application.name
    color: Theme.window
    menuBar: contents?.menuBar ?? null

    Binding {
        when: window.overlays !== null
        target: window.contents
        property: "covered"
        value: window.overlays?.covering ?? false
    }
}
