// Lines that are put together of several names and facts, some of which may be written from right to left.
//
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick

QtObject {
    // The line with its parts in the order in which they were put together: without a mark at each separator, a number
    // that follows a Hebrew name counts as a part of that name and is drawn on its other side.
    function inOrder(line: string): string {
        const mark = "\u200e"
        return mark + line.replace(/ [·\/›] /g, mark + "$&" + mark)
    }
}
