// The little hand of cards that stands for a folder or a stack: up to three pictures, the first on top.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: fan

    required property var assets // a list of Asset; the first three count
    property real spread: 1

    readonly property int shown: Math.min(3, assets.length)
    readonly property real cardShare: 0.92
    readonly property real lift: 0.02  // of the height, the top card up and the third down
    readonly property real shift: 0.2  // of the width, the lower cards to either side
    readonly property real tilt: 8     // degrees

    Behavior on spread { SpringNumber {} }

    Repeater {
        model: fan.shown

        FanCard {
            required property int index

            // The second card leans to the left, the third to the right.
            readonly property int side: index === 0 ? 0 : index === 1 ? -1 : 1

            z: -index
            width: fan.width * fan.cardShare
            height: fan.height * fan.cardShare
            x: (fan.width - width) / 2 + side * fan.shift * fan.width * fan.spread
            y: (fan.height - height) / 2 + [-1, 0, 1][index] * fan.lift * fan.height
            rotation: side * fan.tilt * fan.spread
            asset: fan.assets[index]
        }
    }
}
