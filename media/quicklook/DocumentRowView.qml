// One row of a text: a line, a paragraph, a heading, an item, a piece of code, a rule, a picture, a row of a table.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

Item {
    id: row

    required property int index
    required property string rowStyle
    required property string rowText
    required property bool isRich
    required property int indent
    required property string mark
    required property bool isTight
    required property var cells
    required property var alignments
    required property var picture
    required property point marked // the characters from x to before y are selected

    readonly property bool isTitle: rowStyle === "title" || rowStyle === "heading" || rowStyle === "subheading"
    readonly property bool isTable: rowStyle === "tableRow" || rowStyle === "tableHead"
    readonly property bool isCode: rowStyle === "code"
    readonly property bool isMono: isCode || rowStyle === "line"
    readonly property bool isCue: rowStyle === "cue"
    readonly property int step: 24 // of a list
    readonly property int markWidth: isCue ? 76 : step
    readonly property int start: isCue ? markWidth : step * indent
    readonly property bool isPlain: !isRich && (rowStyle === "body" || rowStyle === "line")
    readonly property int above: index === 0 || isTight || isPlain ? 0
                                 : isTitle ? Theme.blockGap - Theme.grid : isCue ? Theme.gap : Theme.grid * 3
    readonly property bool isFigure: rowStyle === "picture" || rowStyle === "rule"
    readonly property bool isMarked: marked.x < marked.y

    // The character before which a point of the row lies; a row of a table has a beginning and an end.
    function spotAt(x: real, y: real): int {
        const words = wordsAt(x, y)
        if (!words || isTable)
            return x < width / 2 ? 0 : 1
        const point = mapToItem(words, x, y)
        return words.positionAt(point.x, point.y)
    }

    function linkAt(x: real, y: real): string {
        const words = isRich ? wordsAt(x, y) : null
        const point = words ? mapToItem(words, x, y) : null
        return words?.linkAt(point.x, point.y) ?? ""
    }

    function wordsAt(x: real, y: real): TextEdit {
        return loader.item?.wordsAt?.(mapToItem(loader.item, x, y)) ?? null
    }

    height: above + content.height

    Item {
        id: content
        y: row.above
        x: row.start
        width: row.width - row.start
        height: loader.item?.height ?? 0

        Loader {
            id: loader
            width: parent.width
            sourceComponent: row.rowStyle === "rule" ? rule : row.rowStyle === "picture" ? picture
                             : row.isTable ? table : row.isCode ? code : words
        }
        Text {
            visible: row.mark !== ""
            x: -row.markWidth
            width: row.markWidth - Theme.gap
            horizontalAlignment: row.isCue ? Text.AlignLeft : Text.AlignRight
            text: row.mark
            textFormat: Text.RichText // it stands at another height in its line than plain text
            color: Theme.textFaint
            font.family: Theme.familyDigits
            font.pixelSize: row.isCue ? Theme.sizeFact : Theme.sizeBody
            lineHeightMode: Text.FixedHeight
            lineHeight: Theme.lineDocument
        }
    }

    // Text that shows what is selected. It hears of no pointer: what is selected may reach over many rows.
    component Words: TextEdit {
        required property bool isRich
        required property bool isMono
        property string words
        property int spacing: Theme.lineDocument // from line to line
        property point marked
        // Only for what needs them: they take longer to read than most rows.
        readonly property string styles: isRich && words.includes("<")
            ? "<style>b { font-weight: 600 } code { font-family: '" + Theme.familyCode + "'; color: " + Theme.bars
              + " } a { color: " + Theme.amber + "; text-decoration: none }</style>"
            : ""

        function escaped(words: string): string {
            return words.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/\n/g, "<br>")
        }

        function showMarked() {
            if (marked.x < marked.y)
                select(marked.x, marked.y)
            else
                deselect()
        }

        readOnly: true
        selectByKeyboard: false
        activeFocusOnPress: false
        persistentSelection: true
        textFormat: TextEdit.RichText
        text: styles + "<p style='white-space: pre-wrap; -qt-line-height-type: fixed; line-height: "
              + spacing + "px'>" + (isRich ? words : escaped(words)) + "</p>"
        wrapMode: TextEdit.Wrap
        color: Theme.text
        selectedTextColor: color
        selectionColor: Theme.amberSelection
        font.family: isMono ? Theme.familyCode : Theme.family
        font.pixelSize: isMono ? Theme.sizeFact : Theme.sizeBody

        Accessible.role: Accessible.StaticText
        Accessible.name: getText(0, length)

        onMarkedChanged: showMarked()
        // Not with the text, which says that it changes when it is selected in, too.
        onWordsChanged: Qt.callLater(showMarked)
    }

    Component {
        id: words
        Item {
            height: text.height

            function wordsAt(): TextEdit { return text }

            Rectangle {
                visible: row.rowStyle === "quote"
                width: Theme.ring
                height: parent.height
                radius: Theme.ring / 2
                color: Theme.thumb
            }
            Words {
                id: text
                isRich: row.isRich
                isMono: row.isMono
                marked: row.marked
                x: row.rowStyle === "quote" ? Theme.pageMargin : 0
                width: parent.width - x
                // An empty line is as high as any other.
                height: Math.max(implicitHeight, spacing)
                words: row.rowText
                color: row.rowStyle === "quote" ? Theme.textSoft : Theme.text
                font.pixelSize: row.rowStyle === "title" ? Theme.sizePage : row.rowStyle === "heading" ? Theme.sizeSheet
                                : row.isMono ? Theme.sizeFact : Theme.sizeBody
                font.weight: row.isTitle ? Theme.semibold : Theme.regular
                spacing: row.rowStyle === "title" ? Theme.linePage + Theme.grid : Theme.lineDocument
            }
        }
    }
    Component {
        id: code
        Rectangle {
            height: codeText.height + 2 * Theme.gap
            radius: row.isTight ? 0 : Theme.radiusRow
            color: Theme.hover

            function wordsAt(): TextEdit { return codeText }

            Words {
                id: codeText
                isRich: row.isRich
                isMono: row.isMono
                marked: row.marked
                x: Theme.pageMargin - Theme.grid
                y: Theme.gap
                width: parent.width - 2 * x
                words: row.rowText
            }
        }
    }
    Component {
        id: rule
        Item {
            height: Theme.pageMargin
            Hairline {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
            }
        }
    }
    Component {
        id: picture
        DocumentFigure {
            file: row.picture
            description: row.rowText

            Rectangle {
                anchors.fill: parent
                visible: row.isMarked
                radius: Theme.radiusBadge
                color: Theme.amberSelection
            }
        }
    }
    Component {
        id: table
        Item {
            height: cellRow.height + 1

            function wordsAt(point: point): TextEdit {
                return cellRow.childAt(point.x, Math.max(0, Math.min(point.y, cellRow.height - 1))) as TextEdit
            }

            Rectangle {
                anchors.fill: parent
                visible: row.isMarked
                color: Theme.amberSelection
            }
            Row {
                id: cellRow
                width: parent.width

                Repeater {
                    model: row.cells
                    Words {
                        required property int index
                        required property string modelData
                        isRich: row.isRich
                        isMono: row.isMono
                        width: Math.floor(cellRow.width / row.cells.length)
                        topPadding: Theme.grid - 1
                        bottomPadding: Theme.gap - 1
                        rightPadding: Theme.pageMargin
                        words: modelData
                        horizontalAlignment: row.alignments[index] ?? Qt.AlignLeft
                        font.weight: row.rowStyle === "tableHead" ? Theme.semibold : Theme.regular
                        color: row.rowStyle === "tableHead" ? Theme.text : Theme.textSoft
                    }
                }
            }
            Hairline { width: parent.width; anchors.bottom: parent.bottom }
        }
    }
}
