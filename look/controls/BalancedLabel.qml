// A sentence that is broken into lines of about the same length: none of its words stands alone in the last one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Label {
    id: sentence

    property real available: 0 // how wide it may be
    readonly property real best: Math.min(available, balanced(text, available) + 1)

    // The least width in which the words take no more lines than in all of the room.
    function balanced(words: string, width: real): real {
        const lengths = words.split(" ").map(word => metrics.advanceWidth(word))
        const blank = metrics.advanceWidth(" ")
        const lines = within => {
            let count = 1
            let end = 0
            for (const length of lengths) {
                if (end > 0 && end + blank + length > within) {
                    ++count
                    end = 0
                }
                end += (end > 0 ? blank : 0) + length
            }
            return count
        }
        let least = Math.min(width, Math.max(...lengths))
        let enough = width
        while (enough - least > 1) {
            const middle = (least + enough) / 2
            lines(middle) > lines(width) ? least = middle : enough = middle
        }
        return Math.ceil(enough)
    }

    width: best
    wrapMode: Text.Wrap
    elide: Text.ElideNone

    FontMetrics {
        id: metrics
        font: sentence.font
    }
}
