// A small table of the keys that count here and what they do, in one line if there is width for it, else in two.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: view

    required property ScreeningRoom room

    property real widest: Infinity

    readonly property var hints: KeyHintTable.hintsFor(room.stage)
    readonly property bool inOneLine: lineWidth <= widest
    property real lineWidth: 0

    implicitWidth: grid.implicitWidth
    implicitHeight: grid.implicitHeight

    Accessible.role: Accessible.Table
    Accessible.name: qsTr("Keys")

    function measure() {
        let sum = 0
        for (let i = 0; i < cells.count; ++i)
            sum += (cells.itemAt(i)?.implicitWidth ?? 0) + (i > 0 ? grid.columnSpacing : 0)
        lineWidth = sum
    }

    Grid {
        id: grid
        columns: view.inOneLine ? Math.max(1, cells.count) : Math.ceil(cells.count / 2)
        columnSpacing: Theme.pageMargin
        rowSpacing: Theme.grid

        Repeater {
            id: cells
            model: view.hints
            onItemAdded: Qt.callLater(view.measure)
            onItemRemoved: Qt.callLater(view.measure)

            Row {
                id: cell

                required property var modelData

                spacing: Theme.grid + 2

                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.keys + ": " + modelData.meaning

                Rectangle {
                    width: Math.max(Math.ceil(keys.implicitWidth) + Theme.gap, height)
                    height: Theme.lineFact + 2
                    radius: Theme.radiusBadge
                    color: Theme.press

                    Label {
                        id: keys
                        anchors.centerIn: parent
                        style: Label.Fact
                        text: cell.modelData.keys
                        Accessible.ignored: true
                    }
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    style: Label.Fact
                    color: Theme.textFaint
                    text: cell.modelData.meaning
                    Accessible.ignored: true
                }
            }
        }
    }
}
