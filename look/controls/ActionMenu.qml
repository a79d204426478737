// A menu of a `MenuBar`, told by its actions. The entries that show them are made when it first opens: a window makes
// all its menus at the start, and few are ever looked at.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

Menu {
    id: menu

    // What is no action stands for a line between two.
    default property list<QtObject> actions

    readonly property Component line: Component { MenuSeparator {} }

    onAboutToShow: {
        if (count > 0)
            return
        for (let i = 0; i < actions.length; ++i) {
            const action = actions[i] as T.Action
            if (action)
                addAction(action)
            else
                addItem(line.createObject(contentItem) as Item)
        }
    }
}
