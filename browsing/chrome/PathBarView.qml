// The way to the folder on view: each step leads there, and the last one opens a menu of its siblings.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Lumbra.Browsing
import Lumbra.Look

RowLayout {
    id: bar

    required property PathBar path

    spacing: 0

    Repeater {
        model: bar.path.steps

        RowLayout {
            id: place

            required property int index
            required property var modelData
            readonly property bool last: index === bar.path.steps.length - 1

            spacing: 0
            // Long names give way, the present folder's last.
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth
            Layout.minimumWidth: last ? Math.min(implicitWidth, 120) : 0

            Symbol {
                visible: place.index > 0
                name: "chevron.right"
                size: Theme.sizeSymbolSmall
                color: Theme.textFaint
            }
            StepButton {
                Layout.fillWidth: true
                title: place.modelData.title
                badge: place.modelData.badge
                hue: place.modelData.hue
                current: place.last
                onClicked: place.last ? menu.openAt(this) : bar.path.go(place.index)
            }
        }
    }
    Item { Layout.fillWidth: true }

    Loader {
        id: menu

        property var entries: []

        function openAt(step: Item) {
            active = false
            entries = bar.path.menu()
            active = true
            item.popup(step, 0, step.height + Theme.grid)
        }

        active: false
        sourceComponent: EntriesMenu {
            entries: menu.entries
            onClosed: if (menu) menu.active = false
        }
    }
}
