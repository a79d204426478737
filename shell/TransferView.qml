// A copy that goes on in the background: what is copied, how far it is, and a way to stop it. It stands at the foot of
// the page, above the toast where the two would meet.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Shell

Surface {
    id: view

    required property TransferProgress transfer
    required property ToastView toast

    readonly property int measure: 320
    readonly property bool meetsToast: toast.toasts.shown && toast.x + toast.width + Theme.gap > x

    anchors.right: parent.right
    anchors.rightMargin: Theme.pageMargin
    y: parent.height - toast.rise - height - (meetsToast ? toast.height + Theme.gap : 0)
    width: measure
    height: row.implicitHeight + 2 * Theme.controlPadding
    radius: Theme.radiusCard
    opacity: transfer.shown ? 1 : 0
    visible: opacity > 0
    enabled: transfer.shown

    Behavior on opacity { EaseNumber {} }

    ProgressRow {
        id: row
        objectName: "transfer"
        anchors.fill: parent
        anchors.margins: Theme.controlPadding
        text: view.transfer.name
        detail: view.transfer.figures
        value: view.transfer.value
        cancellable: true
        onCancelled: view.transfer.cancel()
    }
}
