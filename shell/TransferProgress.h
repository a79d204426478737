// How far a copy in the background is, in words, for as long as it is worth telling. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Library.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

namespace lumbra {

class TransferProgress : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    Q_PROPERTY(QString name READ name NOTIFY changed)       // of the file under way
    Q_PROPERTY(QString figures READ figures NOTIFY changed) // "3 of 12 files · 1.2 MB of 3.25 GB"
    Q_PROPERTY(double value READ value NOTIFY changed)      // 0 to 1

public:
    // What is over sooner is not told.
    static constexpr std::chrono::milliseconds usualDelay{500};

    // The library must outlive it.
    explicit TransferProgress(Library* library, std::chrono::milliseconds delay = usualDelay,
                              QObject* parent = nullptr);

    bool shown() const { return m_shown; }

    // Those of the last moment, so that what is on its way out keeps its words.
    QString name() const { return m_progress.name; }
    QString figures() const;
    double value() const;

    Q_INVOKABLE void cancel() { m_library->cancelTransfer(); }

Q_SIGNALS:
    void shownChanged();
    void changed();

private:
    void follow();
    void setShown(bool shown);

    Library* m_library;
    Files::Progress m_progress;
    bool m_shown = false;
    QTimer m_delay;
};

} // namespace lumbra
