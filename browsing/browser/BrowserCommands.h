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
    Q_PROPERTY(bool hasFolder READ hasFolder NOTIFY hasFolderChanged)

public:
    // The browser must outlive it.
    explicit BrowserCommands(Browser* browser, QObject* parent = nullptr);

    // At least one file is selected.
    bool hasSelection() const { return m_hasSelection; }

    // The page is that of a folder.
    bool hasFolder() const { return m_hasFolder; }

    Q_INVOKABLE void open() const;
    Q_INVOKABLE void reveal() const; // with nothing selected, the folder that is shown, if any
    Q_INVOKABLE void copyPaths() const;
    Q_INVOKABLE void exportFiles() const;
    Q_INVOKABLE void star() const;
    Q_INVOKABLE void rename() const; // unless exactly one is selected, nothing
    Q_INVOKABLE void trash() const;

    // In the folder that is shown; nothing without one.
    Q_INVOKABLE void newFolder() const;
    Q_INVOKABLE void addFiles() const;

    Q_INVOKABLE void toggleInspector() const;

Q_SIGNALS:
    void hasSelectionChanged();
    void hasFolderChanged();

private:
    Library* library() const { return m_browser->library(); }
    void follow();

    Browser* m_browser;
    bool m_hasSelection = false;
    bool m_hasFolder = false;
};

} // namespace lumbra
