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
    verticalAlignment: Text.AlignVCenter
    font.family: tabular ? Theme.familyDigits : Theme.family
    font.kerning: !tabular
    font.pixelSize: Theme.sizes[style]
    font.weight: style >= Label.Section ? Theme.semibold : Theme.regular
    lineHeightMode: Text.FixedHeight
    lineHeight: lineSpacing
    // A fixed line height puts the extra room below the letters; half of it belongs above them.
    topPadding: Theme.leading[style]
    bottomPadding: -topPadding

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
