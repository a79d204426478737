// The sheet of the first run: it chooses the folder that the library is. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Library.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace lumbra {

class Onboarding : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    Q_PROPERTY(QString folder READ folderText NOTIFY folderChanged)       // the choice, for people
    Q_PROPERTY(QString startFolder READ startFolder NOTIFY folderChanged) // where the panel opens

public:
    // The library must outlive it. `relaunch` starts the application anew: the root is fixed for the life of a process.
    explicit Onboarding(Library* library, std::function<void()> relaunch, QObject* parent = nullptr);
    explicit Onboarding(Library* library, QObject* parent = nullptr);

    bool shown() const { return m_library->onboarding(); }

    Location folder() const { return m_folder; }
    QString folderText() const { return m_folder.abbreviated(); }
    QString startFolder() const { return m_folder.parent().abbreviated(); }

    Q_INVOKABLE void choose(const QString& path);

    // Records the choice and closes the sheet; relaunches if the library is another one then. If it can't be recorded
    // the library's `lastError` says why, and the sheet stays.
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void shownChanged();
    void folderChanged();

private:
    void setFolder(const Location& folder);

    Library* m_library;
    std::function<void()> m_relaunch;
    Location m_folder;
};

} // namespace lumbra
