// Something long at work: what it is, how far, and a way to stop it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts

Item {
    id: row

    property alias text: label.text
    property alias value: bar.value // 0 to 1
    property alias indeterminate: bar.indeterminate
    property alias detail: detail.text // in figures, below the bar
    property bool cancellable: false

    signal cancelled()

    implicitWidth: 260
    implicitHeight: layout.implicitHeight

    ColumnLayout {
        id: layout
        anchors.fill: parent
        spacing: Theme.grid

        RowLayout {
            spacing: Theme.gap

            Label {
                id: label
                Layout.fillWidth: true
                style: Label.Fact
                tabular: true
                elide: Text.ElideMiddle
                maximumLineCount: 1
            }
            IconButton {
                visible: row.cancellable
                objectName: "progressCancel"
                symbol: "xmark.circle.fill"
                symbolSize: Theme.sizeSymbolSmall
                text: qsTr("Cancel")
                implicitWidth: Theme.lineFact
                implicitHeight: Theme.lineFact
                onClicked: row.cancelled()
            }
        }
        ProgressBar {
            id: bar
            Layout.fillWidth: true
            Accessible.name: label.text
        }
        Label {
            id: detail
            Layout.fillWidth: true
            visible: text !== ""
            style: Label.Fact
            tabular: true
            color: Theme.textFaint
        }
    }
}
