// Something is at work and nobody knows how long.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Gauge {
    indeterminate: true
    Accessible.name: qsTr("Busy")
}
