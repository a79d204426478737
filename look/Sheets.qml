// How many sheets ask for something right now: what lies behind them rests, also what is reached by key alone.
//
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick

QtObject {
    property int shown: 0
}
