// The message at the foot of the window: shows the library's toast, and takes it away when its time is over. Each toast
// has its full time; the wake-up of an older one can't remove a newer. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Library.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

namespace lumbra {

class Toasts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one.")

    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(bool amber READ amber NOTIFY changed) // a star's own symbol has the colour of stars
    Q_PROPERTY(bool undoable READ undoable NOTIFY changed)

public:
    static constexpr std::chrono::milliseconds usualTime{2600};

    // The library must outlive it.
    explicit Toasts(Library* library, std::chrono::milliseconds time = usualTime, QObject* parent = nullptr);

    bool shown() const { return m_shown; }

    // Those of the last toast, so that one on its way out keeps its words.
    QString text() const { return m_toast.text; }
    QString symbol() const;
    bool amber() const { return !m_toast.symbol; }
    bool undoable() const { return bool(m_toast.undo); }

    // Runs the action of the toast that shows and takes the toast away, so that nothing is undone twice.
    Q_INVOKABLE void undo();

Q_SIGNALS:
    void changed();
    void appeared(); // a toast, also when it takes the place of another

private:
    void follow();
    void remove();

    Library* m_library;
    Toast m_toast;
    bool m_shown = false;
    QTimer m_time;
};

} // namespace lumbra
