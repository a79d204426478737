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
            Accessible.ignored: true
        }
        Gauge {
            anchors.centerIn: parent
            visible: value >= 0
            Accessible.ignored: true
            value: foot.sidebar.footer.share
        }
        Symbol {
            anchors.centerIn: parent
            name: foot.sidebar.footer.symbol
            size: Theme.sizeSymbolSmall
            color: Theme.textSoft
        }
    }
    Column {
        id: facts
        anchors.left: mark.right
        anchors.leftMargin: Theme.gap
        anchors.right: options.left
        anchors.rightMargin: Theme.grid
        anchors.verticalCenter: parent.verticalCenter

        Item {
            width: parent.width
            height: line.height

            Label {
                id: line
                objectName: "footer"
                width: Math.min(implicitWidth, facts.width - tail.width)
                style: Label.Fact
                tabular: foot.sidebar.footer.share >= 0
                text: foot.sidebar.footer.text
                elide: Text.ElideMiddle
                Accessible.name: text + tail.text

                Hint { text: line.truncated ? line.text : "" }
            }
            Label {
                id: tail
                x: line.contentWidth
                style: Label.Fact
                text: foot.sidebar.footer.tail
                Accessible.ignored: true
            }
        }
        Label {
            objectName: "footer detail"
            width: parent.width
            visible: text !== ""
            style: Label.Fact
            color: Theme.textFaint
            text: foot.sidebar.footer.detail
            elide: Text.ElideMiddle
        }
    }
    MenuIconButton {
        id: options
        objectName: "options"
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        symbol: "gearshape"
        text: qsTr("Library options")
        entries: () => foot.sidebar.optionsMenu()
    }
}
