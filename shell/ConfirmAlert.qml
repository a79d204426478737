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
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() { confirmations.asking ? open() : close() }

    Connections {
        target: alert.confirmations
        function onQuestionChanged() { alert.follow() }
    }
}
