// A movement on the spring of the design: `Behavior on x { SpringNumber {} }`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

NumberAnimation {
    duration: Theme.spring
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.springCurve
}
