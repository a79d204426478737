// The mark of a project or a group: a rounded square in its hue with one or two letters of its name.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing
import Lumbra.Look

Rectangle {
    id: badge

    property string name
    property int hue: 0
    property int size: 18

    readonly property string mark: Badges.mark(name)

    implicitWidth: size
    implicitHeight: size
    radius: 0.3 * size
    color: Badges.background(hue)

    Text {
        anchors.centerIn: parent
        text: badge.mark
        textFormat: Text.PlainText
        color: Badges.foreground(badge.hue)
        font.family: Theme.family
        font.weight: Theme.semibold
        font.pixelSize: Math.round(badge.size * Badges.letterShare(badge.mark))
        Accessible.ignored: true
    }
}
