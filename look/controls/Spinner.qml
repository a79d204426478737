// Something is at work and nobody knows how long. What is done in a moment needs no sign of it, and to turn one takes from
// the work the processors that draw it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Item {
    id: spinner

    implicitWidth: Theme.sizeSymbolSmall
    implicitHeight: Theme.sizeSymbolSmall
    onVisibleChanged: if (!visible) gauge.source = ""

    Timer {
        interval: Theme.patience
        running: spinner.visible
        onTriggered: gauge.setSource("Gauge.qml", { indeterminate: true, name: qsTr("Busy") })
    }
    // By its file's name, so that what draws shapes is loaded only then.
    Loader {
        id: gauge
        anchors.fill: parent
    }
}
