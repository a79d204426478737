// A question or a message over everything: a title, a text and one or two buttons. The first button answers Return,
// the second Escape; with a single button both do the same.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts

Sheet {
    id: alert

    property string title
    property string message
    property string confirm: "OK"
    property string cancel
    property bool destructive: false

    signal confirmed()
    signal cancelled()

    readonly property int measure: 340
    readonly property Button proposed: cancel && destructive ? cancelButton : confirmButton // by Return

    text: title
    contentWidth: measure
    onDismissed: cancel ? cancelled() : confirmed()
    onAboutToShow: proposed.focus = true
    onOpened: proposed.focusReason = Qt.TabFocusReason // nobody should have to guess what Return will do

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Label {
            Layout.preferredWidth: alert.measure
            style: Label.SheetTitle
            text: alert.title
            wrapMode: Text.Wrap
        }
        Label {
            Layout.preferredWidth: alert.measure
            visible: text !== ""
            text: alert.message
            color: Theme.textSoft
            wrapMode: Text.Wrap
            maximumLineCount: 12
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Theme.controlPadding
            spacing: Theme.gap

            Item { Layout.fillWidth: true }
            Button {
                id: cancelButton
                visible: alert.cancel !== ""
                text: alert.cancel
                onClicked: {
                    alert.close()
                    alert.cancelled()
                }
            }
            Button {
                id: confirmButton
                text: alert.confirm
                kind: alert.destructive ? Button.Destructive : Button.Default
                onClicked: {
                    alert.close()
                    alert.confirmed()
                }
            }
        }
    }
}
