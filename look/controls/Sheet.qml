// A surface that asks for something before the window goes on. The window behind it is dimmed and takes no input; Tab
// stays inside; Escape dismisses it unless `dismissable` is off.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

T.Popup {
    id: sheet

    property bool dismissable: true
    property string text // its name for assistive technology
    property bool asks: false // until it begins to go

    signal dismissed() // by Escape

    parent: T.Overlay.overlay
    // There is no overlay any more while the window goes.
    x: Math.round(((parent?.width ?? 0) - width) / 2)
    y: Math.round(((parent?.height ?? 0) - height) / 2)
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: Theme.windowMargin
    padding: Theme.sheetMargin
    modal: true
    dim: true
    focus: true
    closePolicy: T.Popup.NoAutoClose

    onAboutToShow: asks = true
    onAboutToHide: asks = false
    onAsksChanged: asks ? Sheets.add(sheet) : Sheets.remove(sheet)
    Component.onDestruction: asks = false

    enter: Transition { EaseNumber { property: "opacity"; from: 0; to: 1 } }
    exit: Transition { EaseNumber { property: "opacity"; to: 0 } }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
        Behavior on opacity { EaseNumber {} }
    }

    background: Surface {
        radius: Theme.radiusSheet
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.text

        // What lies behind may ask for the keys when its content comes; they stay here all the same.
        Connections {
            target: sheet.asks ? sheet.parent.Window.window : null
            function onActiveFocusItemChanged() {
                let item = sheet.parent.Window.activeFocusItem
                while (item && item !== sheet.parent)
                    item = item.parent
                if (!item && Sheets.top === sheet)
                    sheet.forceActiveFocus(Qt.PopupFocusReason)
            }
        }
        Shortcut {
            sequence: "Escape"
            enabled: sheet.asks && sheet.dismissable && sheet.activeFocus // not while another lies over it
            onActivated: {
                sheet.dismissed()
                sheet.close()
            }
        }
    }
}
