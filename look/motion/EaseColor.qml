// The change of a colour under the pointer: `Behavior on color { EaseColor {} }`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

ColorAnimation {
    duration: Theme.quick
    easing.type: Theme.easeOut
}
