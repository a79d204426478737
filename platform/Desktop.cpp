// SPDX-License-Identifier: GPL-3.0-or-later
#include "Desktop.h"

#include "SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>

namespace lumbra::Desktop {

namespace {

// The file manager may have to be started first.
constexpr int revealTimeout = 10'000; // milliseconds

void openFoldersOf(const QList<Location>& locations) {
    QList<Location> folders;
    for (const Location& location : locations) {
        const Location folder = location.parent();
        if (!folders.contains(folder))
            folders.append(folder);
    }
    open(folders);
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
