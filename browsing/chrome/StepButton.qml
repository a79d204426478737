// One step of a path: a folder's name, with the badge of a project or group before it. The present one opens a menu.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look

T.AbstractButton {
    id: step

    property string title
    property string badge
    property int hue: 0
    property bool current: false
    property bool targeted: false // a drag of files is over it
    property real room: implicitWidth // that it may take; a name that is cut takes less than it was cut for
    readonly property real taken: name.truncated ? beside + Math.ceil(name.contentWidth) : Math.min(implicitWidth, room)

    // What stands beside the name, which gives way when there is no room for all.
    readonly property real beside: (badge ? mark.width + row.spacing : 0) + (current ? arrow.width + row.spacing : 0)
        + leftPadding + rightPadding

    implicitWidth: beside + Math.ceil(name.implicitWidth)
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.grid + 2
    rightPadding: Theme.grid + 2
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: current ? Accessible.ButtonMenu : Accessible.Button
    Accessible.name: title
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Row {
            id: row
            height: parent.height
            spacing: Theme.grid + 2

            ProjectBadge {
                id: mark
                anchors.verticalCenter: parent.verticalCenter
                visible: step.badge !== ""
                name: step.badge
                hue: step.hue
            }
            Item {
                anchors.verticalCenter: parent.verticalCenter
                width: step.taken - step.beside
                height: name.height

                Label {
                    id: name
                    width: Math.min(implicitWidth, step.room - step.beside)
                    style: step.current ? Label.Section : Label.Body
                    color: step.current || step.hovered ? Theme.text : Theme.textSoft
                    text: Bidi.inOneLine(step.title)
                    elide: Text.ElideMiddle
                    Accessible.ignored: true
                }
            }
            Symbol {
                id: arrow
                anchors.verticalCenter: parent.verticalCenter
                visible: step.current
                name: "chevron.down"
                size: Theme.sizeSymbolSmall
                color: Theme.textSoft
            }
        }
    }

    background: Bed {
        radius: Theme.radiusControl
        hovered: step.hovered
        pressed: step.down
        targeted: step.targeted
    }

    FocusRing { shown: step.visualFocus; outset: 0 }
    Hint { text: name.truncated ? step.title : ""; control: step }
}
