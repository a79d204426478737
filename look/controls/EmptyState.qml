// What a page says when it has nothing to show: a symbol, a title, one sentence and at most one button, centred across
// the page, `offset` below its top.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

Item {
    id: empty

    property alias symbol: symbol.name
    property alias title: title.text
    property alias text: sentence.text
    property string buttonText
    property int offset: 0

    signal activated()

    readonly property int measure: 380

    // The least width in which the words take no more lines than at the given width: none of them stands alone in the
    // last line.
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

    implicitWidth: measure
    implicitHeight: offset + column.implicitHeight

    FontMetrics {
        id: metrics
        font: sentence.font
    }
    Column {
        id: column
        y: empty.offset
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(empty.measure, empty.width - 2 * Theme.pageMargin)
        spacing: Theme.gap

        Symbol {
            id: symbol
            anchors.horizontalCenter: parent.horizontalCenter
            visible: name !== ""
            size: Theme.sizeSymbolEmpty
            color: Theme.textFaint
        }
        Item { width: 1; height: Theme.grid; visible: symbol.visible }
        Label {
            id: title
            width: parent.width
            style: Label.SheetTitle
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Label {
            id: sentence
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, empty.balanced(text, parent.width) + 1)
            visible: text !== ""
            color: Theme.textSoft
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Item { width: 1; height: Theme.grid; visible: button.visible }
        Button {
            id: button
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            text: empty.buttonText
            onClicked: empty.activated()
        }
    }
}
