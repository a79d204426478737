// Lines that show names: of any script, with anything in them that a file may be called.
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

    // The name without what would break its line or tear it apart.
    function inOneLine(name: string): string {
        return name.replace(/[\u0000-\u001f\u007f\u0085\u2028\u2029]+/g, " ")
    }
}
