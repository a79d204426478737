// One row of the palette, below the title of its section if it is the first: what stands for it, its two lines, and, on
// the highlighted one, what the keys do with it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look
import Lumbra.Media

Item {
    id: line
    objectName: "paletteRow" + row.id

    required property var row // a PaletteResult

    property bool highlighted: false
    readonly property string text: row.title // for whoever asks what is to be seen

    readonly property int sectionHeight: 30
    readonly property int rowHeight: 46
    readonly property int markWidth: 40
    readonly property int markHeight: 30
    readonly property int badgeSize: 26

    signal chosen()

    implicitHeight: bed.y + rowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: row.title
    Accessible.description: row.subtitle
    Accessible.selectable: true
    Accessible.selected: highlighted
    Accessible.focusable: true
    Accessible.focused: highlighted
    Accessible.onPressAction: chosen()

    Label {
        x: Theme.pageMargin
        width: parent.width - 2 * x
        height: line.sectionHeight
        visible: line.row.section !== ""
        style: Label.Section
        color: Theme.textSoft
        text: line.row.section
        Accessible.role: Accessible.Heading
    }

    Bed {
        id: bed
        x: Theme.rowInset
        y: line.row.section !== "" ? line.sectionHeight : 0
        width: parent.width - 2 * x
        height: line.rowHeight
        hovered: mouse.containsMouse
        pressed: mouse.pressed
        selected: line.highlighted

        MouseArea {
            id: mouse
            anchors.fill: parent
            hoverEnabled: true
            onClicked: line.chosen()
        }

        Item {
            id: mark
            x: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            width: line.markWidth
            height: line.markHeight

            ProjectBadge {
                anchors.centerIn: parent
                visible: line.row.hasBadge
                name: line.row.badgeName
                hue: line.row.badgeHue
                size: line.badgeSize
            }
            Symbol {
                anchors.centerIn: parent
                visible: line.row.symbol !== ""
                name: line.row.symbol
                size: Theme.sizeSymbol + 2
                color: Theme.textSoft
            }
            Loader {
                anchors.fill: parent
                active: line.row.hasAsset
                sourceComponent: Rectangle {
                    radius: Theme.radiusBadge
                    color: Theme.well

                    ThumbnailView {
                        anchors.fill: parent
                        asset: line.row.file
                        size: line.markWidth
                        backdrop: true
                        cornerRadius: parent.radius
                    }
                }
            }
        }
        Column {
            anchors { left: mark.right; right: hint.visible ? hint.left : parent.right }
            anchors { leftMargin: Theme.controlPadding; rightMargin: Theme.controlPadding }
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width
                text: Bidi.inOneLine(line.row.title)
                elide: Text.ElideMiddle
                maximumLineCount: 1
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                style: Label.Fact
                text: Bidi.inOneLine(Bidi.inOrder(line.row.subtitle))
                elide: Text.ElideMiddle
                maximumLineCount: 1
                Accessible.ignored: true
            }
        }
        Label {
            id: hint
            objectName: "paletteHint"
            anchors { right: parent.right; rightMargin: Theme.gap + Theme.grid; verticalCenter: parent.verticalCenter }
            visible: line.highlighted
            style: Label.Fact
            text: line.row.hint
        }
    }
}
