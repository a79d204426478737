// A small ring that fills as work is done; without a known end it turns.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: gauge

    property real value: 0 // 0 to 1
    property bool indeterminate: false
    property string name: qsTr("Progress") // for assistive technology

    implicitWidth: Theme.sizeSymbolSmall
    implicitHeight: Theme.sizeSymbolSmall

    Accessible.role: Accessible.ProgressBar
    Accessible.name: name

    Ring {
        id: ring
        anchors.fill: parent
        stroke: Theme.ring
        track: Theme.press
        color: Theme.amber
        part: gauge.indeterminate ? 0.25 : gauge.value

        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: Theme.turn
            loops: Animation.Infinite
            running: gauge.indeterminate && gauge.visible
            onRunningChanged: if (!running) ring.rotation = 0
        }
    }
}
