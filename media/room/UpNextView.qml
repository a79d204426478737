// The queue beside the stage: every file that the arrows walk through, and whether the next one plays by itself.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media

Item {
    id: view
    objectName: "upNext"

    required property ScreeningRoom room

    implicitWidth: 316

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Up next")

    Surface {
        anchors.fill: parent
        radius: Theme.radiusSheet
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }

    Item {
        id: head
        x: Theme.pageMargin
        width: parent.width - 2 * x
        height: Theme.headerHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            style: Label.Section
            text: qsTr("Up next")
            Accessible.role: Accessible.Heading
        }
        Label {
            objectName: "position"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            style: Label.Fact
            tabular: true
            text: view.room.index < 0 ? "" : qsTr("%1 of %2").arg(view.room.index + 1).arg(view.room.order.count)
        }
    }
    Switch {
        id: autoplay
        objectName: "autoplay"
        x: Theme.pageMargin
        anchors.top: head.bottom
        anchors.topMargin: -Theme.grid
        width: parent.width - 2 * x
        text: qsTr("Play the next one automatically")
        checked: view.room.autoplayNext
        onToggled: {
            view.room.autoplayNext = checked
            // The click has set it by itself, and undone the binding.
            checked = Qt.binding(() => view.room.autoplayNext)
        }
    }
    Hairline {
        id: line
        anchors { top: autoplay.bottom; topMargin: Theme.gap }
        width: parent.width
    }
    ListView {
        id: list
        objectName: "queue"
        anchors { top: line.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
        anchors.bottomMargin: Theme.gap
        topMargin: Theme.gap
        clip: true
        reuseItems: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        keyNavigationEnabled: false // up and down are the room's, and lead from file to file
        model: view.room.order
        currentIndex: view.room.index
        highlightMoveDuration: Theme.scroll
        highlightMoveVelocity: -1
        highlightRangeMode: ListView.ApplyRange
        preferredHighlightBegin: 0
        preferredHighlightEnd: height
        T.ScrollBar.vertical: ScrollBar {}

        Accessible.role: Accessible.List
        Accessible.name: qsTr("Up next")

        // At first without a movement, once there is a height; afterwards the view follows its current row.
        property bool placed: false
        onHeightChanged: {
            if (placed || height <= 0)
                return
            placed = true
            positionViewAtIndex(currentIndex, ListView.Center)
        }

        delegate: QueueRow {
            required property int index
            required property var path

            objectName: "row" + index
            x: Theme.gap
            width: ListView.view.width - 2 * x
            held: view.room.opening
            onClicked: view.room.pick(path)

            FocusRing {
                shown: list.activeFocus && parent.playing
                surfaceRadius: Theme.radiusRow
                outset: 0
            }
        }
    }
}
