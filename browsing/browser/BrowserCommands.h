// What the window's menus call on the page: each command acts on the selected files, or on the folder that is shown.
//
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Browser.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class BrowserCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one.")

    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY hasSelectionChanged)

public:
    // The browser must outlive it.
    explicit BrowserCommands(Browser* browser, QObject* parent = nullptr);

    // At least one file is selected.
    bool hasSelection() const { return m_hasSelection; }

    Q_INVOKABLE void open() const;
    Q_INVOKABLE void reveal() const; // with nothing selected, the folder that is shown, if any
    Q_INVOKABLE void copyPaths() const;

Q_SIGNALS:
    void hasSelectionChanged();

private:
    QList<Location> selectedPaths() const;
    void follow();

    Browser* m_browser;
    bool m_hasSelection = false;
};

} // namespace lumbra
