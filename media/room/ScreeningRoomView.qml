// The screening room over the whole window: one file on the stage, the light that it throws, and the controls, which
// hide while a film runs.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Window
import Lumbra.Look
import Lumbra.Media

FocusScope {
    id: view

    required property ScreeningRoom room

    // To be drawn, but not to be seen.
    property bool rehearses: false

    // It fades in: what stalls it would be seen.
    property bool opens: true

    // Once it can no longer be seen.
    signal faded()

    readonly property real unseen: 0.0015 // just enough for the scene to draw it
    readonly property int focusAgain: 300 // milliseconds; by then the window has given its own focus away
    // In the smallest window what the capsule and the panel leave is shared out beside and between them.
    readonly property int narrowest: 560 // of the capsule
    readonly property int panelMargin: {
        const spare = width - narrowest - panelsAlone
        return Math.max(Theme.grid, Math.min(Theme.windowMargin, Math.floor(spare / 3)))
    }
    readonly property real panelsAlone: (drawer.active ? drawer.width : 0) + (queue.active ? queue.width : 0)
    readonly property int footHeight: Math.max(Theme.rowHeight, hints.height) + Theme.controlPadding

    readonly property bool isFilm: room.stage === "video"
    // Full screen is for the film alone: there the panels lie over it.
    readonly property bool filmFillsScreen: isFilm && Window.visibility === Window.FullScreen
    // What they take of the width, with a margin on either side.
    readonly property real panels: {
        const count = (drawer.active ? 1 : 0) + (queue.active ? 1 : 0)
        return count > 0 ? panelsAlone + (count + 1) * panelMargin : 0
    }
    // A film that runs alone has the room to itself.
    readonly property real besideFilm: filmFillsScreen || !room.chrome ? 0 : panels

    function isWithin(item: Item, frame: Item): bool {
        while (item && item !== frame)
            item = item.parent
        return item !== null
    }

    function takeFocus() {
        if (room.open && Sheets.shown === 0)
            forceActiveFocus(Qt.OtherFocusReason)
    }

    opacity: 0
    // Its parts are seen through one another otherwise.
    layer.enabled: opacity < 1
    enabled: room.open
    focus: true
    activeFocusOnTab: true // Tab leads from here into the room; it would begin with the page behind

    Accessible.role: Accessible.Pane
    Accessible.name: "Screening room"

    Keys.onPressed: event => event.accepted = room.handle(event.key, event.modifiers, event.text, event.isAutoRepeat)
    onActiveFocusChanged: room.focused = activeFocus

    Component.onCompleted: {
        opacity = Qt.binding(() => room.open ? 1 : rehearses ? unseen : 0)
        takeFocus()
    }
    onOpacityChanged: {
        if (opacity === 1)
            opens = false
        if (opacity === 0 && !room.open)
            faded()
    }

    Behavior on opacity {
        enabled: !view.rehearses
        NumberAnimation { duration: Theme.room; easing.type: Theme.easeOut }
    }
    Timer {
        interval: view.focusAgain
        running: true
        onTriggered: view.takeFocus()
    }
    Connections {
        target: view.room
        function onOpenChanged() { view.takeFocus() }
        function onAssetChanged() { if (calm.running) calm.restart() }
    }
    // The first web view is made while somebody looks at what stands still, before the walk comes to what needs it.
    Timer {
        id: calm
        interval: 600 // milliseconds without a step
        running: view.room.nearsWebView && view.room.open && !view.opens && !view.room.engine.isPlaying && !WebViews.ready
        onTriggered: WebViews.prepare()
    }
    // A menu or a panel that closes gives the keys to the window's page, which lies behind the room.
    Connections {
        target: view.Window.window
        function onActiveFocusItemChanged() {
            const window = view.Window.window // whose page is another item than the attached property tells
            if (view.isWithin(window.activeFocusItem, window.contentItem) && !view.isWithin(view, window.contentItem))
                Qt.callLater(view.takeFocus)
        }
    }
    Binding {
        target: view.room
        property: "roomWidth"
        value: view.width
    }
    Binding {
        target: view.room
        property: "stageWidth"
        value: view.width - view.panels - 2 * Theme.pageMargin
    }
    Binding {
        target: view.room
        property: "stagePixels"
        value: Qt.size(Math.round(picturePlace.width * view.Screen.devicePixelRatio),
                       Math.round(picturePlace.height * view.Screen.devicePixelRatio))
    }

    // What lies behind gets neither the pointer nor the wheel.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }
    HoverHandler {
        cursorShape: view.room.pointerHidden ? Qt.BlankCursor : Qt.ArrowCursor
        onPointChanged: if (hovered) view.room.pointerAt(point.position)
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.stage
    }
    AmbientGlow {
        id: glow
        anchors.fill: parent
        picture: view.room.ambient
        sound: view.room.stage === "audio"
        accent: Theme.amber
        centre: view.width > 0 ? stage.width / 2 / view.width : 0.5
        onChanged: change.restart()

        NumberAnimation {
            id: change
            target: glow
            property: "progress"
            from: 0
            to: 1
            duration: Theme.glow
            easing.type: Theme.easeInOut
        }
    }

    Item {
        id: stage
        width: parent.width - view.panels
        height: parent.height

        // Where everything but a film stands; that takes all of the height.
        Item {
            id: picturePlace
            anchors { fill: parent; topMargin: bar.height; bottomMargin: view.footHeight }
            anchors { leftMargin: Theme.pageMargin; rightMargin: Theme.pageMargin }
        }
        StagePicture {
            objectName: "still"
            anchors.fill: picturePlace
            visible: view.room.stage === "image"
            image: view.room.stillImage
            poster: view.room.poster
            Accessible.role: Accessible.Graphic
            Accessible.name: view.room.name
        }
        Loader {
            width: view.width - view.besideFilm
            height: parent.height
            active: view.isFilm
            sourceComponent: FilmStage { room: view.room }
            Behavior on width { EaseNumber {} }
        }
        Loader {
            anchors.fill: picturePlace
            active: view.room.stage === "web"
            sourceComponent: WebVideoView {
                path: view.room.url
                autoplay: true
                held: view.opens
            }
        }
        Loader {
            anchors { fill: picturePlace; bottomMargin: capsule.active ? capsule.height : 0 }
            active: view.room.stage === "audio"
            sourceComponent: AudioStage { room: view.room }
        }
        Loader {
            anchors.fill: picturePlace
            active: view.room.stage === "document"
            sourceComponent: Rectangle {
                radius: Theme.radiusSheet
                color: Theme.pane

                QuickLookView {
                    anchors.fill: parent
                    path: view.room.path
                    poster: view.room.poster
                    held: view.opens
                }
            }
        }
    }

    Item {
        id: chrome
        anchors.fill: parent
        opacity: view.room.chrome ? 1 : 0
        visible: opacity > 0

        Behavior on opacity { EaseNumber {} }

        // Over a film the texts need a ground of their own.
        component Shade: Rectangle {
            id: shade
            property bool atTop: false
            readonly property real darkest: 0.78
            gradient: Gradient {
                GradientStop { position: 0; color: Theme.black(shade.atTop ? shade.darkest : 0) }
                GradientStop { position: 0.5; color: Theme.black(0.7 * shade.darkest) }
                GradientStop { position: 1; color: Theme.black(shade.atTop ? 0 : shade.darkest) }
            }
        }
        Shade {
            visible: view.isFilm
            atTop: true
            width: parent.width
            height: bar.height + Theme.blockGap
        }
        Shade {
            visible: view.isFilm
            anchors.bottom: parent.bottom
            width: parent.width
            height: 2 * view.footHeight
        }

        RoomTopBar {
            id: bar
            width: parent.width
            room: view.room
        }
        Loader {
            id: capsule
            // In the smallest window it is wider than the stage, and takes from the margin beside it.
            x: Math.max(view.panelMargin, Math.round((stage.width - width) / 2))
            anchors { bottom: parent.bottom; bottomMargin: view.footHeight }
            active: view.room.usesEngine
            sourceComponent: ControlCapsule { room: view.room }
        }
        KeyHints {
            id: hints
            x: Math.round((stage.width - width) / 2)
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Math.round((view.footHeight - height) / 2)
            room: view.room
            widest: stage.width - 2 * Theme.pageMargin
        }
        Loader {
            id: queue
            anchors.right: drawer.active ? drawer.left : parent.right
            anchors.rightMargin: view.panelMargin
            anchors { top: bar.bottom; bottom: parent.bottom; bottomMargin: view.panelMargin }
            active: view.room.queueShown
            sourceComponent: UpNextView { room: view.room }
        }
        Loader {
            id: drawer
            anchors { right: parent.right; rightMargin: view.panelMargin }
            anchors { top: bar.bottom; bottom: parent.bottom; bottomMargin: view.panelMargin }
            active: view.room.showInfo
            sourceComponent: InfoDrawerView { room: view.room }
        }
    }
}
