// Where files may be dropped: says yes before it has looked for them, and always takes them as a copy, so that the
// program they come from takes nothing away.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Lumbra.Browsing

DropArea {
    id: area

    property bool possible: true

    signal filesDropped(urls: var)

    onEntered: drag => {
        drag.accepted = area.possible && drag.hasUrls && DroppedFiles.areIn(drag.urls)
        if (drag.accepted)
            drag.accept(Qt.CopyAction)
    }
    // Each step is asked anew what would be done.
    onPositionChanged: drag => drag.accept(Qt.CopyAction)
    onDropped: drop => {
        drop.accept(Qt.CopyAction)
        area.filesDropped(drop.urls)
    }
}
