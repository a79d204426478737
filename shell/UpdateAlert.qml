// Says what a look for a newer version came to, and offers the page of one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Shell

Alert {
    id: alert
    contentItem.objectName: "updateAlert"

    required property UpdateCheck updater

    confirm: "OK"
    onConfirmed: updater.offers ? updater.download() : updater.dismiss()
    onCancelled: updater.dismiss()
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() {
        if (updater.title === "")
            return close()
        title = updater.title
        message = updater.message
        confirm = updater.offers ? "Download" : "OK"
        cancel = updater.offers ? "Later" : ""
        open()
    }

    Connections {
        target: alert.updater
        function onResultChanged() { alert.follow() }
    }
}
