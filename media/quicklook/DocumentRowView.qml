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
    required property var picture

    signal linkActivated(link: string)

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
    readonly property string styles: "<style>b { font-weight: 600 } code { font-family: '" + Theme.familyCode + "'; color: " + Theme.bars
                                     + " } a { color: " + Theme.amber + "; text-decoration: none }</style>"

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
            textFormat: row.isRich ? Text.RichText : Text.PlainText // which stand at different heights in a line
            color: Theme.textFaint
            font.family: Theme.familyDigits
            font.pixelSize: row.isCue ? Theme.sizeFact : Theme.sizeBody
            lineHeightMode: Text.FixedHeight
            lineHeight: Theme.lineDocument
        }
    }

    component Words: Text {
        textFormat: row.isRich ? Text.RichText : Text.PlainText
        wrapMode: Text.Wrap
        color: Theme.text
        linkColor: Theme.amber
        font.family: row.isMono ? Theme.familyCode : Theme.family
        font.pixelSize: row.isMono ? Theme.sizeFact : Theme.sizeBody
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.lineDocument
        onLinkActivated: link => row.linkActivated(link)

        HoverHandler {
            enabled: row.isRich
            cursorShape: parent.hoveredLink ? Qt.PointingHandCursor : Qt.ArrowCursor
        }
    }

    Component {
        id: words
        Item {
            height: text.height

            Rectangle {
                visible: row.rowStyle === "quote"
                width: Theme.ring
                height: parent.height
                radius: Theme.ring / 2
                color: Theme.thumb
            }
            Words {
                id: text
                x: row.rowStyle === "quote" ? Theme.pageMargin : 0
                width: parent.width - x
                // An empty line is as high as any other.
                height: Math.max(implicitHeight, lineHeight)
                text: row.isRich ? row.styles + row.rowText : row.rowText
                color: row.rowStyle === "quote" ? Theme.textSoft : Theme.text
                font.pixelSize: row.rowStyle === "title" ? Theme.sizePage : row.rowStyle === "heading" ? Theme.sizeSheet
                                : row.isMono ? Theme.sizeFact : Theme.sizeBody
                font.weight: row.isTitle ? Theme.semibold : Theme.regular
                lineHeight: row.rowStyle === "title" ? Theme.linePage + Theme.grid : Theme.lineDocument
            }
        }
    }
    Component {
        id: code
        Rectangle {
            height: codeText.height + 2 * Theme.gap
            radius: row.isTight ? 0 : Theme.radiusRow
            color: Theme.hover

            Words {
                id: codeText
                x: Theme.pageMargin - Theme.grid
                y: Theme.gap
                width: parent.width - 2 * x
                wrapMode: Text.WrapAnywhere
                text: row.rowText
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
        }
    }
    Component {
        id: table
        Item {
            height: cellRow.height + 1

            Row {
                id: cellRow
                width: parent.width

                Repeater {
                    model: row.cells
                    Words {
                        required property string modelData
                        width: Math.floor(cellRow.width / row.cells.length)
                        topPadding: Theme.grid - 1
                        bottomPadding: Theme.gap - 1
                        rightPadding: Theme.pageMargin
                        text: row.styles + modelData
                        font.weight: row.rowStyle === "tableHead" ? Theme.semibold : Theme.regular
                        color: row.rowStyle === "tableHead" ? Theme.text : Theme.textSoft
                    }
                }
            }
            Hairline { width: parent.width; anchors.bottom: parent.bottom }
        }
    }
}
