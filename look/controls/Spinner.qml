// Something is at work and nobody knows how long. What is done in a moment needs no sign of it, and to turn one takes from
// the work the processors that draw it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Item {
    id: spinner

    implicitWidth: Theme.sizeSymbolSmall
    implicitHeight: Theme.sizeSymbolSmall
    onVisibleChanged: if (!visible) gauge.active = false

    Timer {
        interval: Theme.patience
        running: spinner.visible
        onTriggered: gauge.active = true
    }
    Loader {
        id: gauge
        anchors.fill: parent
        active: false
        sourceComponent: Component { Gauge { indeterminate: true; name: qsTr("Busy") } }
    }
}
