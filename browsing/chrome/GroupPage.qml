// The projects of a group as a grid of cards.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

GridView {
    id: page

    required property Browser browser

    readonly property int gap: 18
    readonly property int narrowest: 300
    readonly property int widest: 420
    readonly property real available: width - 2 * Theme.pageMargin
    readonly property int columns: Math.max(1, Math.floor((available + gap) / (narrowest + gap)))
    readonly property int cardWidth: Math.min(widest, (available - (columns - 1) * gap) / columns)
    readonly property real spare: available - columns * cardWidth - (columns - 1) * gap

    leftMargin: Theme.pageMargin + Math.floor(spare / 2)
    rightMargin: leftMargin - gap // which belongs to the last column's cell
    topMargin: Theme.pageMargin
    bottomMargin: Theme.pageMargin - gap
    cellWidth: cardWidth + gap
    cellHeight: Math.round((cardWidth - 5 * Theme.controlPadding) / 4) + 2 * Theme.controlPadding + Theme.lineBody
        + Theme.lineFact + Theme.controlPadding + gap
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true // the arrow keys go from card to card
    model: browser.cards
    highlightMoveDuration: 0 // what is unseen does not glide about

    Accessible.role: Accessible.List
    Accessible.name: browser.title

    ScrollBar.vertical: ScrollBar {}

    delegate: ProjectCard {
        width: page.cardWidth
        height: page.cellHeight - page.gap
        onOpened: page.browser.openFolder(url)
    }
}
