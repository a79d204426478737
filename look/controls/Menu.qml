// A menu. Entries are `MenuItem`, `MenuSeparator` and further `Menu`s with a title.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: menu

    property string symbol // of its entry, where it is a submenu

    readonly property int narrowest: 180
    readonly property int widest: 420

    implicitWidth: {
        let width = narrowest
        for (let i = 0; i < count; ++i)
            width = Math.max(width, (itemAt(i)?.implicitWidth ?? 0) + leftPadding + rightPadding)
        return Math.min(width, widest)
    }
    // Of the entries themselves: the list knows its height only once it is drawn, and where a menu opens depends on it.
    implicitHeight: {
        let height = topPadding + bottomPadding
        for (let i = 0; i < count; ++i)
            height += itemAt(i)?.implicitHeight ?? 0
        return height
    }
    margins: Theme.gap
    padding: Theme.grid + 1
    overlap: Theme.grid
    cascade: true
    delegate: MenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
        clip: interactive
        currentIndex: menu.currentIndex
        T.ScrollBar.vertical: ScrollBar {}
    }

    background: Surface { radius: Theme.radiusMenu }
}
