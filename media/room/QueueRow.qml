// A file of the queue: its picture, its name, how long it is, and which one is on show.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look
import Lumbra.Media

// No button, for Qt would tell assistive technology that it is one, whatever stands here.
Item {
    id: row

    required property var asset
    required property string name
    required property bool starred
    required property bool playing
    property bool held: false // a picture that is not at hand is not asked for yet

    signal clicked()

    readonly property int thumbWidth: 88
    readonly property int thumbHeight: 56
    readonly property int bucket: 140
    readonly property string facts: [duration.text, playing ? qsTr("Playing") : ""].filter(text => text).join(", ")

    implicitHeight: thumbHeight + 2 * (Theme.grid + 2)

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: facts + (starred ? ", " + qsTr("Starred") : "")
    Accessible.selectable: true
    Accessible.selected: playing
    Accessible.onPressAction: clicked()

    DurationText {
        id: duration
        asset: row.asset
        wanted: thumb.hasImage || thumb.failed // what is seen first is asked for first
    }

    Bed {
        anchors.fill: parent
        hovered: hover.hovered
        pressed: tap.pressed
        selected: row.playing
    }
    HoverHandler { id: hover }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.WithinBounds
        onTapped: row.clicked()
    }
    Rectangle {
        id: well
        x: Theme.grid + 2
        anchors.verticalCenter: parent.verticalCenter
        width: row.thumbWidth
        height: row.thumbHeight
        radius: Theme.radiusItem
        color: Theme.well

        ThumbnailView {
            id: thumb
            anchors.fill: parent
            asset: row.asset
            size: row.bucket
            backdrop: true
            held: row.held
            cornerRadius: well.radius
        }
    }
    Label {
        id: title
        objectName: "queueName"
        anchors { left: well.right; leftMargin: Theme.gap + 2; right: star.left; rightMargin: Theme.grid }
        anchors.bottom: parent.verticalCenter
        anchors.bottomMargin: below.visible ? 0 : -height / 2
        elide: Text.ElideMiddle
        text: row.name
        font.weight: row.playing ? Theme.semibold : Theme.regular
        Accessible.ignored: true
    }
    Row {
        id: below
        anchors { left: title.left; top: title.bottom }
        visible: duration.text !== "" || row.playing
        spacing: Theme.gap

        Label {
            visible: text !== ""
            style: Label.Fact
            tabular: true
            text: duration.text
            Accessible.ignored: true
        }
        Label {
            objectName: "playingLabel"
            visible: row.playing
            style: Label.Fact
            color: Theme.amber
            text: qsTr("Playing")
            Accessible.ignored: true
        }
    }
    Symbol {
        id: star
        anchors { right: parent.right; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        width: row.starred ? size : 0
        visible: row.starred
        name: "star.fill"
        size: Theme.sizeSymbolSmall
        color: Theme.amber
    }
}
