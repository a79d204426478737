// A short change of opacity, size or place: `Behavior on opacity { EaseNumber {} }`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

NumberAnimation {
    duration: Theme.quick
    easing.type: Theme.easeOut
}
