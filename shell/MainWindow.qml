// The one window. It stands as soon as the application runs, empty, so that the graphics are ready by the time that its
// contents are.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic as Controls
import Lumbra.Look

Controls.ApplicationWindow {
    property QtObject contents: null // as WindowContents.qml has them; its type is not loaded here

    title: contents?.title ?? Application.name
    color: Theme.window
    menuBar: contents?.menuBar ?? null
}
