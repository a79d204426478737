// SPDX-License-Identifier: GPL-3.0-or-later
#include "Desktop.h"

#include "Descriptor.h"
#include "SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>

#include <fcntl.h>

#include <functional>

namespace lumbra::Desktop {

namespace {

// The file manager may have to be started first.
constexpr int revealTimeout = 10'000; // milliseconds
constexpr int portalTimeout = 10'000;

void openFoldersOf(const QList<Location>& locations) {
    QList<Location> folders;
    for (const Location& location : locations) {
        const Location folder = location.parent();
        if (!folders.contains(folder))
            folders.append(folder);
    }
    open(folders);
}

// The portal may run sandboxed and see no path of ours: it gets the opened file. Invalid if that can't be had.
QDBusUnixFileDescriptor opened(const Location& file) {
    const Descriptor descriptor(::open(file.path().constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    return QDBusUnixFileDescriptor(descriptor.number());
}

// Calls a method of the desktop's portal, and `otherwise` when there is none that does it.
void askPortal(const char* interface, const char* method, const QVariantList& arguments,
               const std::function<void()>& otherwise) {
    const auto bus = sessionBus();
    if (!bus)
        return otherwise();
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.") + QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    auto* const watcher = new QDBusPendingCallWatcher(bus->asyncCall(message, portalTimeout), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [watcher, otherwise] {
        watcher->deleteLater();
        if (watcher->isError())
            otherwise();
    });
}

} // namespace

void open(const QList<Location>& locations) {
    for (const Location& location : locations)
        QDesktopServices::openUrl(location.toUrl());
}

void reveal(const QList<Location>& locations) {
    if (locations.isEmpty())
        return;
    const auto bus = sessionBus();
    if (!bus)
        return openFoldersOf(locations);

    QStringList urls;
    for (const Location& location : locations)
        urls.append(location.toUrl().toString(QUrl::FullyEncoded));
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    message << urls << QString(); // no start-up notification
    auto* const watcher = new QDBusPendingCallWatcher(bus->asyncCall(message, revealTimeout), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [watcher, locations] {
        watcher->deleteLater();
        if (watcher->isError())
            openFoldersOf(locations);
    });
}

void openWith(const Location& file) {
    const QDBusUnixFileDescriptor descriptor = opened(file);
    if (!descriptor.isValid())
        return;
    const QVariantMap options{{QStringLiteral("ask"), true}};
    askPortal("OpenURI", "OpenFile", {QString(), QVariant::fromValue(descriptor), options}, [file] { open({file}); });
}

void sendByMail(const QList<Location>& files) {
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    QList<QDBusUnixFileDescriptor> attached;
    QStringList words;
    for (const Location& file : files) {
        if (const QDBusUnixFileDescriptor descriptor = opened(file); descriptor.isValid()) {
            attached.append(descriptor);
            words += {QStringLiteral("--attach"), file.toString()};
        }
    }
    if (attached.isEmpty())
        return;
    const QVariantMap options{{QStringLiteral("attachment_fds"), QVariant::fromValue(attached)}};
    askPortal("Email", "ComposeEmail", {QString(), options},
              [words] { QProcess::startDetached(QStringLiteral("xdg-email"), words); });
}

bool openTerminal(const Location& folder) {
    for (const QString& command : {qEnvironmentVariable("TERMINAL"), QStringLiteral("x-terminal-emulator"),
                                   QStringLiteral("xdg-terminal-exec")}) {
        QStringList words = QProcess::splitCommand(command); // people put arguments into $TERMINAL
        if (words.isEmpty())
            continue;
        const QString program = words.takeFirst();
        if (QProcess::startDetached(program, words, folder.toString()))
            return true;
    }
    return false;
}

} // namespace lumbra::Desktop
