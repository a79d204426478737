// The kind filter in the widest of three forms that fits: chips with their counts, chips alone, or a menu.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: chips

    required property BrowserSettings settings
    property var counts: [] // of the kinds, in the order of Chips.kinds
    property real available: 0 // how wide it may be

    readonly property int chipGap: Theme.grid + 2
    readonly property bool fitsCounts: widthWith(true) <= available
    readonly property bool fitsChips: widthWith(false) <= available
    readonly property string all: "all"

    function countText(position: int): string { return Chips.countText(counts[position] ?? 0) }

    // A chip that is on is bolder, so every chip counts as if it were.
    function widthOf(label: string, count: string): real {
        return 2 * Theme.controlPadding + bold.advanceWidth(label)
            + (count ? chipGap + digits.advanceWidth(count) : 0)
    }
    function widthWith(counted: bool): real {
        let width = widthOf(qsTr("All"), "")
        for (let i = 0; i < Chips.kinds.length; ++i)
            width += chipGap + widthOf(Chips.kinds[i].label, counted ? countText(i) : "")
        return width
    }

    implicitWidth: form.width
    implicitHeight: Theme.chipHeight

    FontMetrics {
        id: bold
        font { family: Theme.family; pixelSize: Theme.sizeFact; weight: Theme.semibold }
    }
    FontMetrics {
        id: digits
        font { family: Theme.familyDigits; pixelSize: Theme.sizeFact }
    }

    Loader {
        id: form
        sourceComponent: chips.fitsChips ? pills : compact
    }

    Component {
        id: pills
        Row {
            spacing: chips.chipGap

            Chip {
                label: qsTr("All")
                on: chips.settings.kindRaw === chips.all
                onClicked: chips.settings.kindRaw = chips.all
            }
            Repeater {
                model: Chips.kinds

                Chip {
                    required property int index
                    required property var modelData
                    label: modelData.label
                    count: chips.fitsCounts ? chips.countText(index) : ""
                    on: chips.settings.kindRaw === modelData.value
                    dim: !chips.counts[index]
                    onClicked: chips.settings.kindRaw = modelData.value
                }
            }
        }
    }

    Component {
        id: compact
        ChoiceButton {
            readonly property bool isOn: Chips.kinds.some(kind => kind.value === chips.settings.kindRaw)

            label: qsTr("Kind")
            symbol: "line.3.horizontal.decrease.circle"
            // Like a chip that is on: nobody should have to open a menu to see that files are hidden.
            kind: isOn ? Button.Default : Button.Normal
            choices: [{ value: chips.all, label: qsTr("All") }].concat(Chips.kinds)
            value: chips.settings.kindRaw
            onChosen: value => chips.settings.kindRaw = value
        }
    }
}
