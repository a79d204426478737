// The line at the foot of the sidebar: what the library is doing or where it lies, and its options.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Item {
    id: foot

    required property Sidebar sidebar

    implicitHeight: Theme.headerHeight - Theme.grid

    Hairline { width: parent.width }

    Item {
        id: mark
        x: Theme.rowInset + Theme.gap
        width: Theme.sizeSymbolSmall
        height: parent.height

        Spinner {
            anchors.centerIn: parent
            visible: foot.sidebar.footer.busy
        }
        Symbol {
            anchors.centerIn: parent
            name: foot.sidebar.footer.symbol
            size: Theme.sizeSymbolSmall
            color: Theme.textSoft
        }
    }
    Label {
        anchors.left: mark.right
        anchors.leftMargin: Theme.gap
        anchors.right: options.left
        anchors.rightMargin: Theme.grid
        anchors.verticalCenter: parent.verticalCenter
        style: Label.Fact
        text: foot.sidebar.footer.text
        elide: Text.ElideMiddle
    }
    MenuIconButton {
        id: options
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        symbol: "gearshape"
        text: qsTr("Library options")
        entries: () => foot.sidebar.optionsMenu()
    }
}
