// The web views: made when first needed, or just before that while nobody waits, since the first takes 100 ms and 155 MB,
// and then one is kept for whoever comes next. One is free when nobody has it as a child.
//
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick
import Lumbra.Media

Item {
    id: views

    property var made: []
    property Component maker: null
    readonly property bool ready: made.length > 0 // whoever comes next does not wait for one

    // A view as a child of the item; null where there is no web engine. To give it back is to take its parent away.
    function take(item: Item): Item {
        discard(view => view.crashed)
        let view = made.find(candidate => candidate.parent === null)
        if (view) {
            view.parent = item
            discard(other => other.parent === null)
            return view
        }
        return make(item)
    }

    // Makes the first one ahead, in this thread.
    function prepare() {
        if (!ready)
            make(null)
    }

    function make(item: Item): Item {
        if (!WebRights.mayStart())
            return null
        if (!maker)
            maker = Qt.createComponent(Qt.resolvedUrl("WebPage.qml"))
        const view = maker.status === Component.Ready ? maker.createObject(views, { parent: item }) as Item : null
        if (view)
            made = made.concat([view])
        else
            console.warn(maker.errorString())
        return view
    }

    function discard(isUseless: var) {
        for (const view of made.filter(isUseless)) {
            view.parent = null
            view.destroy()
        }
        made = made.filter(view => !isUseless(view))
    }
}
