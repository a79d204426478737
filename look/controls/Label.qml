// A piece of text in one of the six styles of the design.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Text {
    id: label

    enum Style { Body, Fact, Section, SheetTitle, PageTitle, Heading }

    property int style: Label.Body
    property bool tabular: false // digits of one width, for a number that changes in place

    readonly property int lineSpacing: Theme.lines[style]

    color: style === Label.Fact ? Theme.textSoft : Theme.text
    textFormat: Text.PlainText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft // whichever way the text is written: it stands flush with what is around it
    verticalAlignment: Text.AlignVCenter
    font.family: tabular ? Theme.familyDigits : Theme.family
    font.kerning: !tabular
    font.pixelSize: Theme.sizes[style]
    font.weight: style >= Label.Section ? Theme.semibold : Theme.regular
    lineHeightMode: Text.FixedHeight
    lineHeight: lineSpacing // centred, a line has what it is higher than its letters half above them

    // Some scripts stand in taller lines, which would push their letters below those around them.
    readonly property real sunk: verticalAlignment !== Text.AlignVCenter ? 0
        : baselineOffset - (height - contentHeight) / 2 - Theme.metrics.ascent * font.pixelSize / 1000
    transform: Translate { y: label.sunk > 0.5 ? -label.sunk : 0 }

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
