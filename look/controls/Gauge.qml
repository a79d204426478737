// A small ring that fills as work is done; without a known end it turns. Drawn once, then only clipped or turned.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Shapes

Item {
    id: gauge

    property real value: 0 // 0 to 1
    property bool indeterminate: false
    property string name: qsTr("Progress") // for assistive technology

    readonly property int stroke: Theme.ring
    readonly property real reach: (Math.min(width, height) - stroke) / 2

    implicitWidth: Theme.sizeSymbolSmall
    implicitHeight: Theme.sizeSymbolSmall

    Accessible.role: Accessible.ProgressBar
    Accessible.name: name

    Shape {
        id: arcs
        anchors.fill: parent
        layer.enabled: true
        layer.samples: 4
        layer.smooth: true

        ShapePath {
            strokeColor: Theme.press
            strokeWidth: gauge.stroke
            fillColor: Theme.clear
            PathAngleArc {
                centerX: gauge.width / 2
                centerY: gauge.height / 2
                radiusX: gauge.reach
                radiusY: gauge.reach
                sweepAngle: 360
            }
        }
        ShapePath {
            strokeColor: Theme.amber
            strokeWidth: gauge.stroke
            capStyle: ShapePath.RoundCap
            fillColor: Theme.clear
            PathAngleArc {
                centerX: gauge.width / 2
                centerY: gauge.height / 2
                radiusX: gauge.reach
                radiusY: gauge.reach
                startAngle: -90
                sweepAngle: gauge.indeterminate ? 90 : Math.max(0, Math.min(1, gauge.value)) * 360
            }
        }

        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: Theme.turn
            loops: Animation.Infinite
            running: gauge.indeterminate && gauge.visible
            onRunningChanged: if (!running) arcs.rotation = 0
        }
    }
}
