// The one alert for whatever went wrong. An error that comes while it shows replaces its text.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Shell

Alert {
    id: alert

    required property Frame frame

    title: "Something went wrong"
    confirm: "OK"
    onConfirmed: frame.acknowledgeError()
    Component.onCompleted: Qt.callLater(follow) // by then there is a window to open in

    function follow() {
        if (frame.error === "")
            return close()
        message = frame.error
        open()
    }

    Connections {
        target: alert.frame
        function onErrorChanged() { alert.follow() }
    }
}
