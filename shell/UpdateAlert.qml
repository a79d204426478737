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

    Connections {
        target: alert.updater
        function onResultChanged() {
            if (alert.updater.title === "")
                return alert.close()
            alert.title = alert.updater.title
            alert.message = alert.updater.message
            alert.confirm = alert.updater.offers ? "Download" : "OK"
            alert.cancel = alert.updater.offers ? "Later" : ""
            alert.open()
        }
    }
}
