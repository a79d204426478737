// What takes the window over for a while, from the back to the front. None of it is in the window's first frame, and so it
// is loaded after it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Media
import Lumbra.Browsing
import Lumbra.Shell

Item {
    id: overlays

    required property RoomDoor door
    required property Palette jumpTo
    required property Frame frame
    required property Onboarding onboarding
    required property WindowPanels panels
    required property TransferProgress transfer
    required property UpdateCheck updater

    // Whether the room leaves nothing of the window to be seen.
    readonly property bool covering: door.open && room.item !== null && (room.item as Item).opacity === 1

    anchors.fill: parent
    z: 1 // menus included

    RoomRehearsal {
        anchors.fill: parent
        door: overlays.door
    }
    Loader {
        id: room
        anchors.fill: parent
        active: overlays.door.room !== null
        sourceComponent: ScreeningRoomView {
            room: overlays.door.room
            onFaded: overlays.door.faded()
        }
    }
    PaletteView { controller: overlays.jumpTo }
    TransferView {
        transfer: overlays.transfer
        toast: toastView
    }
    ToastView {
        id: toastView
        toasts: overlays.frame.toasts
    }

    NameSheet { prompts: overlays.frame.prompts }
    ConfirmAlert { confirmations: overlays.frame.confirmations }
    UpdateAlert { updater: overlays.updater }
    WindowPanel { panels: overlays.panels }
    ErrorAlert { frame: overlays.frame }
    OnboardingSheet { onboarding: overlays.onboarding }
}
