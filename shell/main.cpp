// SPDX-License-Identifier: GPL-3.0-or-later
#include "App.h"
#include "HangLog.h"
#include "SingleInstance.h"
#include "core/Config.h"
#include "core/PreferenceMigration.h"
#include "look/Look.h"
#include "platform/SessionBus.h"
#include "platform/Startup.h"

#include <QDir>
#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>

#include <clocale>
#include <optional>

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
    QGuiApplication::setApplicationVersion(QStringLiteral(LUMBRA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.lumbra.Lumbra"));
    lumbra::Look::prepareApplication();
    lumbra::migratePreferences(lumbra::Preferences::shared());

    QList<QUrl> opened;
    const QStringList arguments = QGuiApplication::arguments().mid(1);
    for (const QString& argument : arguments)
        opened.append(QUrl::fromUserInput(argument, QDir::currentPath(), QUrl::AssumeLocalFile));

    std::optional<lumbra::SingleInstance> instance;
    if (const auto bus = lumbra::sessionBus()) {
        instance.emplace(*bus);
        if (!instance->claim(lumbra::LumbraConfig::library().canonical(), opened))
            return 0;
    }

    lumbra::Startup::begin();
    const lumbra::HangLog hangLog;
    lumbra::App app(started);
    app.open(opened);
    if (!app.show())
        return 1;
    if (instance)
        QObject::connect(&*instance, &lumbra::SingleInstance::opened, &app, &lumbra::App::open);
    return QGuiApplication::exec();
}
