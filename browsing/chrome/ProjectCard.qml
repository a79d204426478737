// A project on the page of its group: its newest pictures, who it is, and what it holds.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look

Rectangle {
    id: card

    required property var url
    required property string name
    required property int hue
    required property string subtitle
    required property var newest

    readonly property int cells: 4

    signal opened()

    radius: Theme.radiusCard
    color: Theme.raised
    border { width: 1 / Screen.devicePixelRatio; color: Theme.line }

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: subtitle
    Accessible.focusable: true
    Accessible.onPressAction: opened()

    Keys.onReturnPressed: opened()
    Keys.onEnterPressed: opened()
    Keys.onSpacePressed: opened()

    HoverHandler { id: hover }

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        color: Theme.hover
        opacity: hover.hovered ? 1 : 0
        Behavior on opacity { EaseNumber {} }
    }

    Row {
        id: pictures
        x: Theme.controlPadding
        y: Theme.controlPadding
        width: parent.width - 2 * Theme.controlPadding
        spacing: Theme.controlPadding

        Repeater {
            model: card.cells

            CardThumb {
                required property int index
                width: (pictures.width - (card.cells - 1) * pictures.spacing) / card.cells
                height: width
                asset: card.newest[index] ?? null
            }
        }
    }

    ProjectBadge {
        id: badge
        anchors { left: pictures.left; top: pictures.bottom; topMargin: Theme.controlPadding }
        size: Theme.lineBody + Theme.lineFact
        name: card.name
        hue: card.hue
    }
    Label {
        anchors { left: badge.right; leftMargin: Theme.gap + 2; right: pictures.right; top: badge.top }
        style: Label.Section
        text: Bidi.inOneLine(card.name)
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        anchors { left: badge.right; leftMargin: Theme.gap + 2; right: pictures.right; bottom: badge.bottom }
        style: Label.Fact
        text: card.subtitle
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }

    PressArea { onClicked: card.opened() }
    FocusRing { shown: card.activeFocus; surfaceRadius: card.radius }
}
