// Scrolls a view to a place, animated.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Look

NumberAnimation {
    id: glide

    required property Flickable view

    function scrollTo(y: real) {
        stop()
        to = Math.max(view.originY, Math.min(y, view.originY + view.contentHeight - view.height))
        start()
    }

    target: view
    property: "contentY"
    duration: Theme.scroll
    easing.type: Theme.easeOut
}
