// One running application for each library: the first that starts takes a name on the user's message bus, every later
// one hands over what it was to open and ends. The same interface, org.freedesktop.Application, is how the desktop
// itself starts the application and gives it something to open.
//
// Without a bus each start is one of its own. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QUrl>
#include <QVariantMap>

namespace lumbra {

class SingleInstance : public QObject {
    Q_OBJECT

public:
    // The application's name, which its desktop entry bears too, and where it stands on the bus.
    static const QString desktopName;
    static const QString objectPath;

    // The name of the one for the library with this root, which is to be canonical.
    static QString nameFor(const Location& root);

    // The connection is to stay open as long as this.
    explicit SingleInstance(const QDBusConnection& bus, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when this process is the one for the library: from now on signals tell of what others start. False when
    // another one is, which has been given the locations and comes to the front. Waits for that one's answer.
    bool claim(const Location& root, const QList<QUrl>& urls);

Q_SIGNALS:
    // Something is to be opened, or the window is to come to the front if the list is empty.
    void opened(const QList<QUrl>& urls);

private:
    bool handOver(const QString& name, const QList<QUrl>& urls);

    QDBusConnection m_bus;
    QStringList m_names; // that were taken
};

} // namespace lumbra
