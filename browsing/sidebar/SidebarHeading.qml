// The title of a section of the sidebar, and what stands at its end.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: heading

    property string title
    property bool targeted: false
    default property alias trailing: trailing.data

    implicitHeight: Theme.rowHeight + Theme.gap

    Accessible.role: Accessible.Heading
    Accessible.name: title

    Bed {
        anchors.fill: parent
        anchors.topMargin: Theme.gap
        anchors.leftMargin: Theme.rowInset
        anchors.rightMargin: Theme.rowInset
        targeted: heading.targeted
    }
    Label {
        x: Theme.rowInset + Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: Theme.gap / 2
        width: trailing.x - x - Theme.gap
        style: Label.Section
        color: Theme.textSoft
        text: heading.title
        Accessible.ignored: true
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        y: Theme.gap
        height: Theme.rowHeight
    }
}
