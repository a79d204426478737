// SPDX-License-Identifier: GPL-3.0-or-later
#include "App.h"
#include "HangLog.h"
#include "core/PreferenceMigration.h"
#include "look/Look.h"
#include "platform/Startup.h"

#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>

#include <clocale>

int main(int argc, char** argv) {
    QElapsedTimer started;
    started.start();

    // The one graphics interface that the player can draw into.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QGuiApplication application(argc, argv);
    // The application has set it to the user's; the player refuses to start where numbers have a comma.
    std::setlocale(LC_NUMERIC, "C");
    QGuiApplication::setOrganizationName(QStringLiteral("lumbra"));
    QGuiApplication::setApplicationName(QStringLiteral("Lumbra"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.lumbra.Lumbra"));
    lumbra::Look::prepareApplication();
    lumbra::migratePreferences(lumbra::Preferences::shared());

    lumbra::Startup::begin();
    const lumbra::HangLog hangLog;
    lumbra::App app(started);
    QList<QUrl> opened;
    const QStringList arguments = QGuiApplication::arguments().mid(1);
    for (const QString& argument : arguments)
        opened.append(QUrl::fromUserInput(argument, QString(), QUrl::AssumeLocalFile));
    app.open(opened);
    if (!app.show())
        return 1;
    return QGuiApplication::exec();
}
