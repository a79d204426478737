// How far back the Recent page goes. A stored number of days that no chip stands for is used as it is.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Row {
    id: chips

    required property BrowserSettings settings

    spacing: Theme.grid + 2

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
