// How far back the Recent page goes: chips, or where there is no room for them a menu that shows the present period. A
// stored number of days that no chip stands for is used as it is.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Loader {
    id: chips

    required property BrowserSettings settings
    property bool compact: false

    readonly property int chipGap: Theme.grid + 2
    readonly property real fullWidth: Chips.periods.reduce((width, period) => width + chipGap + 2 * Theme.controlPadding
        + Math.ceil(bold.advanceWidth(period.label)), -chipGap)

    sourceComponent: compact ? menu : pills

    FontMetrics {
        id: bold
        font { family: Theme.family; pixelSize: Theme.sizeFact; weight: Theme.semibold }
    }
    Component {
        id: pills
        Row {
            spacing: chips.chipGap

            Repeater {
                model: Chips.periods

                Chip {
                    required property var modelData
                    label: modelData.label
                    on: chips.settings.recentDays === modelData.value
                    onClicked: chips.settings.recentDays = modelData.value
                }
            }
        }
    }
    Component {
        id: menu
        ChoiceButton {
            label: Chips.periodText(chips.settings.recentDays)
            symbol: "clock"
            choices: Chips.periods
            value: chips.settings.recentDays
            onChosen: value => chips.settings.recentDays = value
        }
    }
}
