// The way to the folder on view: each step leads there, and the last one opens a menu of its siblings.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

// No layout of Qt's: in 6.4 one that is not on screen still holds the steps that have gone, and ends the program when it
// gets another width.
Item {
    id: bar

    required property PathBar path

    // What the steps would take if there were room for all, the last one apart: it is where one is, and has up to half of
    // the room for itself.
    readonly property var wanted: {
        const widths = []
        for (let i = 0; i < steps.count; ++i)
            widths.push(steps.itemAt(i)?.implicitWidth ?? 0)
        return widths
    }
    readonly property real ofLast: wanted[wanted.length - 1] ?? 0
    // What each of the others may take: the longest names give way until they are as long as others.
    readonly property real widest: {
        const others = wanted.slice(0, -1).sort((a, b) => a - b)
        let room = width - Math.min(ofLast, width / 2)
        for (let i = 0; i < others.length; ++i) {
            const share = room / (others.length - i)
            if (others[i] > share)
                return Math.floor(share)
            room -= others[i]
        }
        return width
    }
    readonly property real lastRoom: wanted.slice(0, -1).reduce((room, each) => room - Math.min(each, widest), width)

    implicitHeight: Theme.controlHeight

    Row {
        Repeater {
            id: steps
            model: bar.path.steps

            Item {
                id: place

                required property int index
                required property var modelData
                readonly property bool last: index === bar.path.steps.length - 1

                implicitWidth: arrow.room + step.implicitWidth
                width: arrow.room + step.taken
                height: Theme.controlHeight

                Symbol {
                    id: arrow
                    readonly property real room: visible ? width : 0
                    anchors.verticalCenter: parent.verticalCenter
                    visible: place.index > 0
                    name: "chevron.right"
                    size: Theme.sizeSymbolSmall
                    color: Theme.textFaint
                }
                StepButton {
                    id: step
                    x: arrow.room
                    width: taken
                    room: Math.min(place.implicitWidth, place.last ? bar.lastRoom : bar.widest) - x
                    title: place.modelData.title
                    badge: place.modelData.badge
                    hue: place.modelData.hue
                    current: place.last
                    targeted: drops.containsDrag
                    onClicked: place.last ? menu.openAt(this) : bar.path.go(place.index)

                    // The last step is the page, which takes files anywhere.
                    FileDropArea {
                        id: drops
                        anchors.fill: parent
                        enabled: !place.last
                        possible: place.modelData.isFolder
                        onFilesDropped: urls => bar.path.drop(place.index, urls)
                    }
                }
            }
        }
    }
    Loader {
        id: menu

        property var entries: []

        function openAt(step: Item) {
            active = false
            entries = bar.path.menu()
            active = true
            const made = item as EntriesMenu
            made.popup(step, 0, step.height + Theme.grid)
        }

        active: false
        sourceComponent: EntriesMenu {
            entries: menu.entries
            onClosed: if (menu) menu.active = false
        }
    }
}
