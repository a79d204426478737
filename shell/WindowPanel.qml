// The panel for files and folders, when something in the window asks for one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Shell

FilePanel {
    id: panel

    required property WindowPanels panels

    objectName: "windowPanel"
    kind: panels.kind
    message: panels.message
    morePlaces: [{text: "Library", path: panels.libraryFolder, symbol: "archivebox"}]
    onChosen: paths => panels.answer(paths)
    onCancelled: panels.cancel()
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() {
        if (!panels.asking)
            return
        prompt = panels.prompt || (kind === PathChoice.Save ? "Save" : "Choose")
        openAt(panels.folder, panels.name)
    }

    Connections {
        target: panel.panels
        function onAsked() { panel.follow() }
    }
}
