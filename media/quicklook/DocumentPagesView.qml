// The pages of a document, one below the other. The wheel scrolls them, with Ctrl it enlarges them at the pointer, as a
// pinch does; with Shift it scrolls sideways.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media

Flickable {
    id: pagesView

    required property DocumentPages pages
    property var poster // a small picture of the first page, to stand for it until it is drawn

    readonly property real wheelZoom: 1.15 // of one notch

    readonly property bool hasSelection: !selection.isEmpty

    function selectAll() { selection.selectAll() }
    function copy() { selection.copy() }

    // By parts of the view's height; by a factor, 0 for the size that fits.
    function scrollBy(parts: real) { glide.scrollTo(contentY + parts * height) }
    function scrollToEnd(end: bool) { glide.scrollTo(end ? contentHeight : 0) }
    function zoomBy(factor: real) { zoomTo(factor === 0 ? 1 : pages.zoom * factor, Qt.point(width / 2, height / 2)) }

    // The spot under `point` of the view stays there.
    function zoomTo(zoom: real, point: point) {
        const spot = pages.spotAt(Qt.point(contentX + point.x, contentY + point.y))
        pages.zoom = zoom
        stay(spot, point)
    }

    function stay(spot: var, point: point) {
        const now = pages.pointOf(spot)
        contentWidth = pages.extent.width
        contentHeight = pages.extent.height
        contentX = within(now.x - point.x, contentWidth - width)
        contentY = within(now.y - point.y, contentHeight - height)
        look()
    }

    function within(value: real, most: real): real { return Math.max(0, Math.min(value, most)) }

    function look() { pages.look(contentY, height) }

    clip: true
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    contentWidth: pages.extent.width
    contentHeight: pages.extent.height
    T.ScrollBar.vertical: ScrollBar { id: upright }
    T.ScrollBar.horizontal: ScrollBar { id: lying }

    onWidthChanged: {
        const spot = contentY > 0 ? pages.spotAt(Qt.point(contentX, contentY)) : null
        pages.width = width
        if (spot)
            stay(spot, Qt.point(0, 0))
    }
    onHeightChanged: look()
    onMovementStarted: glide.stop()
    onContentYChanged: {
        look()
        place.show()
    }
    Component.onCompleted: {
        pages.width = width
        look()
    }

    Connections {
        target: pagesView.pages
        function onLayoutChanged() {
            pagesView.contentWidth = pagesView.pages.extent.width
            pagesView.contentHeight = pagesView.pages.extent.height
            if (!glide.running) {
                pagesView.contentX = pagesView.within(pagesView.contentX, pagesView.contentWidth - pagesView.width)
                pagesView.contentY = pagesView.within(pagesView.contentY, pagesView.contentHeight - pagesView.height)
            }
        }
    }

    DocumentGlide {
        id: glide
        view: pagesView
    }

    PageSelection {
        id: selection
        pages: pagesView.pages
    }

    Repeater {
        model: pagesView.pages

        DocumentPage {
            id: sheet

            required page
            required property rect place

            x: place.x
            y: place.y
            width: place.width
            height: place.height
            file: pagesView.pages.file
            edition: pagesView.pages.edition
            seen: {
                const left = Math.max(0, pagesView.contentX - x)
                const top = Math.max(0, pagesView.contentY - y)
                const right = Math.min(width, pagesView.contentX + pagesView.width - x)
                const bottom = Math.min(height, pagesView.contentY + pagesView.height - y)
                return right > left && bottom > top ? Qt.rect(left, top, right - left, bottom - top) : Qt.rect(0, 0, 0, 0)
            }

            Binding on poster {
                when: sheet.page === 0 && pagesView.poster !== undefined
                value: pagesView.poster
            }
            Repeater {
                model: (selection.version, selection.placesOn(sheet.page))

                Rectangle {
                    required property rect modelData

                    x: modelData.x * sheet.width
                    y: modelData.y * sheet.height
                    width: modelData.width * sheet.width
                    height: modelData.height * sheet.height
                    color: Theme.amberSelection
                }
            }
        }
    }

    PagePointer {
        objectName: "documentPointer"
        parent: pagesView
        anchors { fill: parent; rightMargin: upright.width; bottomMargin: lying.height }
        view: pagesView
        pages: pagesView.pages
        selection: selection
    }
    Item {
        parent: pagesView
        anchors.fill: parent

        WheelHandler {
            acceptedModifiers: Qt.ControlModifier
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => pagesView.zoomTo(pagesView.pages.zoom * Math.pow(pagesView.wheelZoom, event.angleDelta.y / 120),
                                          Qt.point(event.x, event.y))
        }
        WheelHandler {
            acceptedModifiers: Qt.ShiftModifier
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => pagesView.contentX = pagesView.within(pagesView.contentX - event.angleDelta.y,
                                                                    pagesView.contentWidth - pagesView.width)
        }
        PinchHandler {
            property real before: 1
            target: null
            onActiveChanged: before = pagesView.pages.zoom
            onScaleChanged: if (active) pagesView.zoomTo(before * activeScale, centroid.position)
        }
        Badge {
            id: place
            objectName: "documentPlace"
            anchors { right: parent.right; top: parent.top; margins: Theme.pageMargin }
            text: pagesView.pages.currentPage + " of " + pagesView.pages.pageCount
            opacity: 0
            visible: opacity > 0 && pagesView.pages.pageCount > 1
            Behavior on opacity { EaseNumber {} }

            function show() {
                opacity = 1
                hiding.restart()
            }
            Timer {
                id: hiding
                interval: 1200
                onTriggered: place.opacity = 0
            }
        }
    }
}
