// The one window. It stands as soon as the application runs, empty, so that the graphics are ready by the time that its
// contents are.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Shell

T.ApplicationWindow {
    id: window

    // As WindowContents.qml and WindowOverlays.qml have them; their types are not loaded here.
    property QtObject contents: null
    property QtObject overlays: null

    title: contents?.title ?? Application.name
    color: Theme.window
    menuBar: contents?.menuBar ?? null

    GraphicsRehearsal {
        id: rehearsal
        visible: false
    }
    // After the first frame, which the main thread waits for.
    Connections {
        target: window
        enabled: window.contents === null
        function onFrameSwapped() { rehearsal.visible = true }
    }
    onContentsChanged: rehearsal.visible = false

    Binding {
        when: window.overlays !== null
        target: window.contents
        property: "covered"
        value: window.overlays?.covering ?? false
    }
}
