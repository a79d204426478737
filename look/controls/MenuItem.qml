// An entry of a menu: a mark or a symbol, its text, and at the right its shortcut or the arrow of a submenu.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.MenuItem {
    id: item

    property string shortcutText: action?.shortcut ? Shortcuts.text(action.shortcut) : ""
    property string symbol: subMenu?.symbol ?? ""
    property bool destructive: false

    readonly property color ink: !enabled ? Theme.textFaint : destructive ? Theme.danger : Theme.text
    // Room for marks is kept in every entry, so that the texts of a menu stand under each other.
    readonly property int markWidth: Theme.sizeSymbolSmall + Theme.grid + 2

    implicitWidth: leftPadding + markWidth + name.implicitWidth + rightPadding + Theme.blockGap
        + (subMenu ? Theme.sizeSymbol : tail.implicitWidth)
    implicitHeight: Theme.menuItemHeight
    leftPadding: Theme.grid + 2
    rightPadding: Theme.gap

    Accessible.role: checkable ? Accessible.CheckBox : Accessible.MenuItem
    Accessible.name: text
    Accessible.description: shortcutText
    Accessible.checkable: checkable
    Accessible.checked: checked

    indicator: null
    arrow: null

    contentItem: Item {
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: item.checked ? "checkmark" : item.symbol
            size: Theme.sizeSymbolSmall
            color: item.checked ? Theme.amber : item.ink
        }
        Label {
            id: name
            x: item.markWidth
            width: parent.width - x - (item.subMenu ? Theme.sizeSymbol : tail.width ? tail.width + Theme.gap : 0)
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.ink
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            id: tail
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: !item.subMenu
            style: Label.Fact
            text: item.shortcutText
            color: Theme.textFaint
            Accessible.ignored: true
        }
        Symbol {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: item.subMenu
            name: "chevron.right"
            size: Theme.sizeSymbolSmall
            color: Theme.textFaint
        }
    }

    background: Rectangle {
        radius: Theme.radiusItem
        color: !item.highlighted || !item.enabled ? Theme.clear
             : item.destructive ? (item.down ? Theme.dangerPress : Theme.dangerHover)
             : item.down ? Theme.press : Theme.menuHover
    }
}
