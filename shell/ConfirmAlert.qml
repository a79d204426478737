// Asks before something is destroyed that a menu was chosen for.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Alert {
    id: alert
    contentItem.objectName: "confirmAlert"

    required property Confirmations confirmations

    title: confirmations.title
    message: confirmations.text
    confirm: confirmations.confirm
    cancel: "Cancel"
    destructive: true
    onConfirmed: confirmations.agree()
    onCancelled: confirmations.dismiss()

    Connections {
        target: alert.confirmations
        function onQuestionChanged() {
            if (alert.confirmations.asking)
                alert.open()
            else
                alert.close()
        }
    }
}
