// A text, in rows of which only those near what is seen are items.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Lumbra.Look
import Lumbra.Media

ListView {
    id: textView

    required property QuickLookDocument document

    readonly property int measure: 720 // the width of a column that is good to read
    readonly property int sides: document.isProse ? Math.max(Theme.blockGap, Math.round((width - measure) / 2)) : Theme.pageMargin

    readonly property bool hasSelection: !selection.isEmpty

    function selectAll() { selection.selectAll() }
    function copy() { selection.copy() }
    function scrollBy(parts: real) { glide.scrollTo(contentY + parts * height) }
    function scrollToEnd(end: bool) {
        glide.stop()
        end ? positionViewAtEnd() : positionViewAtBeginning()
    }

    clip: true
    pixelAligned: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false // unseen, it would glide about for seconds and have each step drawn
    reuseItems: true
    cacheBuffer: Math.max(0, height)
    model: document.text
    header: Item { height: Theme.blockGap }
    footer: Item { height: Theme.blockGap }
    T.ScrollBar.vertical: ScrollBar { id: bar }

    onMovementStarted: glide.stop()

    delegate: DocumentRowView {
        x: textView.sides
        width: textView.width - 2 * textView.sides
        marked: (selection.version, selection.rangeIn(index))
    }

    TextSelection {
        id: selection
        text: textView.document.text
    }
    TextPointer {
        objectName: "documentPointer"
        parent: textView
        anchors { fill: parent; rightMargin: bar.width }
        view: textView
        column: textView.sides + 1
        selection: selection
        onLinkActivated: link => textView.document.openLink(link)
    }

    DocumentGlide {
        id: glide
        view: textView
    }
}
