// The palette: a panel over the window with a field, what answers it, and the keys that lead on.
//
// It fills whatever it stands in, keeps the pointer from what lies below, and gives the keyboard back when it closes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Browsing
import Lumbra.Look

FocusScope {
    id: view

    required property Palette controller

    readonly property int panelWidth: 640
    readonly property real fromTop: 0.12   // of the window's height
    readonly property int mostHeight: 520  // of the rows
    readonly property int fieldHeight: 52
    readonly property int footHeight: 34
    readonly property int focusAgain: 50   // ms: whatever else took the keys as it opened has them by then

    property Item before: null // who had the keys
    property bool asks: controller.shown

    anchors.fill: parent
    visible: asks || panel.opacity > 0
    enabled: asks
    Component.onDestruction: asks = false
    onAsksChanged: {
        Sheets.shown += asks ? 1 : -1
        if (asks) {
            before = Window.activeFocusItem
            field.forceActiveFocus(Qt.PopupFocusReason)
            again.start()
        } else {
            again.stop()
            before?.forceActiveFocus(Qt.PopupFocusReason)
            before = null
        }
    }

    // What lies behind may ask for the keys when its content comes; only a sheet gets them.
    Connections {
        target: view.Window.window
        function onActiveFocusItemChanged() {
            if (view.asks && !view.activeFocus && !Sheets.top)
                field.forceActiveFocus(Qt.PopupFocusReason)
        }
    }
    Timer {
        id: again
        interval: view.focusAgain
        onTriggered: if (!Sheets.top) field.forceActiveFocus(Qt.PopupFocusReason)
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: view.controller.close()
        onWheel: event => event.accepted = true
    }

    Surface {
        id: panel
        objectName: "palette"
        x: Math.round((parent.width - width) / 2)
        y: Math.round(parent.height * view.fromTop)
        width: Math.min(view.panelWidth, parent.width - 2 * Theme.windowMargin)
        height: view.fieldHeight + body.height + view.footHeight
        radius: Theme.radiusSheet
        opacity: view.controller.shown ? 1 : 0
        scale: view.controller.shown ? 1 : Theme.paletteScale

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Jump to anything")

        Behavior on opacity { EaseNumber {} }
        Behavior on scale { EaseNumber {} }

        MouseArea { // a click beside the rows is still one inside
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        Symbol {
            id: lens
            x: Theme.pageMargin
            y: (view.fieldHeight - height) / 2
            name: "magnifyingglass"
            size: Theme.sizeSymbol + 2
            color: Theme.textSoft
        }
        TextField {
            id: field
            objectName: "paletteField"
            anchors { left: lens.right; leftMargin: Theme.grid; right: closing.left; rightMargin: Theme.gap }
            height: view.fieldHeight
            focus: true
            font.pixelSize: Theme.sizeSheet
            background: null
            placeholderText: qsTr("Jump to a project, folder or file")
            text: view.controller.query
            onTextChanged: view.controller.query = text
            Keys.onPressed: event => event.accepted = view.controller.press(event.key, event.modifiers)
            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            Keys.onTabPressed: {} // there is nowhere else to go
            Keys.onBacktabPressed: {}
        }
        Rectangle {
            id: closing
            anchors { right: parent.right; rightMargin: Theme.controlPadding }
            y: Math.round((view.fieldHeight - height) / 2)
            width: key.implicitWidth + 2 * (Theme.grid + 2)
            height: Theme.lineBody
            radius: Theme.radiusBadge
            color: Theme.control

            Label {
                id: key
                anchors.centerIn: parent
                style: Label.Fact
                text: qsTr("esc")
            }
        }
        Hairline {
            y: view.fieldHeight
            width: parent.width
        }

        Item {
            id: body
            y: view.fieldHeight
            width: parent.width
            height: empty.visible ? 2 * Theme.headerHeight : list.height

            Label {
                id: empty
                objectName: "paletteEmpty"
                anchors.centerIn: parent
                width: parent.width - 2 * Theme.pageMargin
                horizontalAlignment: Text.AlignHCenter
                visible: text !== ""
                text: view.controller.emptyText
                color: Theme.textSoft
                elide: Text.ElideMiddle
            }
            ListView {
                id: list
                objectName: "paletteRows"

                readonly property real room: view.height - panel.y - view.fieldHeight - view.footHeight
                    - Theme.windowMargin

                width: parent.width
                height: Math.min(contentHeight + topMargin + bottomMargin, view.mostHeight, room)
                topMargin: Theme.grid
                bottomMargin: Theme.grid
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                keyNavigationEnabled: false
                highlightFollowsCurrentItem: false
                model: view.controller.results
                ScrollBar.vertical: ScrollBar {}

                Accessible.role: Accessible.List
                Accessible.name: qsTr("Results")

                delegate: PaletteRow {
                    required property int index

                    width: list.width
                    highlighted: view.controller.highlighted === index
                    onChosen: view.controller.openRow(index)
                }

                Connections {
                    target: view.controller
                    function onHighlightedChanged() { list.keepInView() }
                }

                function keepInView() {
                    if (view.controller.highlighted === 0)
                        positionViewAtBeginning()
                    else
                        positionViewAtIndex(view.controller.highlighted, ListView.Contain)
                }
            }
        }

        Hairline {
            y: panel.height - view.footHeight
            width: parent.width
        }
        Row {
            anchors { left: parent.left; leftMargin: Theme.pageMargin }
            y: panel.height - view.footHeight
            height: view.footHeight
            spacing: Theme.pageMargin

            Repeater {
                model: [qsTr("↑↓ to move"), qsTr("↩ to open"), qsTr("⌘↩ to play")]

                Label {
                    required property string modelData

                    anchors.verticalCenter: parent.verticalCenter
                    style: Label.Fact
                    color: Theme.textFaint
                    text: modelData
                }
            }
        }
    }
}
