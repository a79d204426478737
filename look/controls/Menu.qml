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
        highlightMoveDuration: 0 // what is unseen does not glide about
        highlightResizeDuration: 0
        T.ScrollBar.vertical: ScrollBar {}

        // From the first entry up to the last and from the last down to the first, which Qt does not.
        Connections {
            target: menu.contentItem.parent.Keys
            function onPressed(event: var) {
                const step = event.key === Qt.Key_Up ? -1 : event.key === Qt.Key_Down ? 1 : 0
                if (step === 0 || menu.entryFrom(menu.currentIndex, step) >= 0 && menu.currentIndex >= 0)
                    return
                const other = menu.entryFrom(step > 0 ? -1 : menu.count, step)
                if (other >= 0)
                    menu.currentIndex = other
                event.accepted = true
            }
        }
    }

    // The next entry from there that can be chosen, or -1.
    function entryFrom(index: int, step: int): int {
        for (let i = index + step; i >= 0 && i < count; i += step)
            if (itemAt(i) instanceof T.MenuItem && itemAt(i).enabled)
                return i
        return -1
    }

    background: Surface { radius: Theme.radiusMenu }
}
