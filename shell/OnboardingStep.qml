// One step of the first run: its number, its title, and what there is to do.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Look

Rectangle {
    id: step

    property int number: 1
    property string title
    default property alias content: column.data

    implicitHeight: layout.implicitHeight + 2 * Theme.pageMargin
    radius: Theme.radiusCard
    color: Theme.well

    RowLayout {
        id: layout
        anchors.fill: parent
        anchors.margins: Theme.pageMargin
        spacing: Theme.controlPadding

        Rectangle {
            Layout.alignment: Qt.AlignTop
            implicitWidth: Theme.rowHeight - Theme.grid
            implicitHeight: implicitWidth
            radius: height / 2
            color: Theme.amberSoft

            Label {
                anchors.centerIn: parent
                style: Label.Section
                tabular: true
                text: step.number
                color: Theme.amber
            }
        }
        ColumnLayout {
            id: column
            Layout.fillWidth: true
            spacing: Theme.gap

            Label {
                Layout.fillWidth: true
                style: Label.Section
                text: step.title
            }
        }
    }
}
