// Where the player stands and how long the file is. Neither moves while the digits change.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Row {
    id: view

    required property PlayerEngine engine

    readonly property string time: Transport.timecode(engine.time, true)
    readonly property string duration: Transport.timecode(engine.duration, true)

    spacing: Theme.grid

    Accessible.role: Accessible.StaticText
    // Without what changes a hundred times a second.
    Accessible.name: Transport.timecode(engine.time, false) + " / " + Transport.timecode(engine.duration, false)

    Label {
        // The time never takes more than the whole does, once that is known.
        width: Math.max(implicitWidth, total.implicitWidth - slash.advanceWidth)
        horizontalAlignment: Text.AlignRight
        tabular: true
        text: view.time
        Accessible.ignored: true
    }
    Label {
        id: total
        tabular: true
        color: Theme.textFaint
        text: "/ " + view.duration
        Accessible.ignored: true
    }
    TextMetrics {
        id: slash
        font: total.font
        text: "/ "
    }
}
