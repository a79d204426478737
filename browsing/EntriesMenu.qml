// A menu that shows a list of MenuEntry, whatever stands in it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Menu {
    id: menu

    property var entries: []

    Component.onCompleted: {
        refill()
        entriesChanged.connect(refill)
    }

    // Also while it is open: some entries are known only a moment later.
    function refill() {
        while (count > 0)
            removeItem(itemAt(0))
        for (const entry of entries) {
            if (entry.divider)
                addItem(divider.createObject(contentItem))
            else if (entry.heading)
                addItem(heading.createObject(contentItem, { text: entry.title }))
            else if (entry.note)
                addItem(note.createObject(contentItem, { text: entry.title }))
            else if (entry.submenu)
                addMenu(submenu(entry))
            else
                addItem(choice.createObject(contentItem, { entry: entry }))
        }
    }

    // By its file, since a type can't hold itself.
    function submenu(entry: var): Menu {
        const made = Qt.createComponent("EntriesMenu.qml").createObject(menu, { title: entry.title, entries: entry.children })
        entry.fill(made)
        return made
    }

    Component {
        id: choice

        MenuItem {
            id: line

            required property var entry

            text: Bidi.inOneLine(entry.title)
            enabled: entry.enabled
            destructive: entry.destructive
            checkable: entry.checkable
            checked: entry.checked
            rightPadding: swatch.visible ? swatch.width + 2 * Theme.gap : Theme.gap
            onTriggered: entry.run()

            Rectangle {
                id: swatch
                anchors.right: parent.right
                anchors.rightMargin: Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                visible: line.entry.hue >= 0
                width: Theme.sizeFact
                height: Theme.sizeFact
                radius: Theme.radiusBadge
                color: Badges.foreground(line.entry.hue)
            }
        }
    }

    Component {
        id: divider
        MenuSeparator {}
    }

    Component {
        id: heading

        MenuItem {
            enabled: false
            activeFocusOnTab: false // the keys pass it over
        }
    }

    Component {
        id: note

        MenuItem {
            id: remark

            readonly property int measure: 250

            enabled: false
            activeFocusOnTab: false
            implicitWidth: leftPadding + markWidth + measure + rightPadding
            implicitHeight: words.height + Theme.grid

            contentItem: Item {
                Label {
                    id: words
                    x: remark.markWidth
                    width: remark.measure
                    style: Label.Fact
                    text: remark.text
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                    Accessible.ignored: true
                }
            }
        }
    }
}
