// The small text that explains what lies under the pointer. Views use `Hint`, which shows one at the right time.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: tip

    readonly property int widest: 320

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + Theme.grid : 0
    margins: Theme.windowMargin
    padding: Theme.grid
    leftPadding: Theme.gap
    rightPadding: Theme.gap
    implicitWidth: Math.min(metrics.advanceWidth + 1, widest) + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.NoAutoClose

    enter: Transition { EaseNumber { property: "opacity"; from: 0; to: 1 } }

    contentItem: Label {
        id: words
        style: Label.Fact
        text: tip.text
        color: Theme.text
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    background: Surface { radius: Theme.radiusItem }

    TextMetrics {
        id: metrics
        text: tip.text
        font: words.font
    }
}
