// How many sheets ask for something right now: what lies behind them rests, also what is reached by key alone.
//
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick

QtObject {
    property int shown: 0
    property var stack: [] // those that are sheets, the one on top last

    readonly property var top: stack.length > 0 ? stack[stack.length - 1] : null

    function add(sheet: var) {
        ++shown
        stack = stack.concat([sheet])
    }

    function remove(sheet: var) {
        --shown
        stack = stack.filter(other => other !== sheet)
    }
}
