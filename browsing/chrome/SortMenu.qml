// In which order a folder page shows its files.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

ChoiceButton {
    id: button

    required property BrowserSettings settings

    label: qsTr("Sort")
    symbol: "arrow.up.arrow.down"
    choices: Chips.sortOrders
    value: settings.sort
    onChosen: value => settings.sort = value
}
