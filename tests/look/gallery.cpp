// Draws the gallery of controls into a picture: lookgallery FILE [menu|alert] [--contrast].
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/Look.h"
#include "look/Symbols.h"

#include <QGuiApplication>
#include <QImage>
#include <QQmlContext>
#include <QQuickView>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    lumbra::Look::prepareApplication();
    const QStringList arguments = app.arguments();
    QQuickView view;
    lumbra::Look::prepareEngine(*view.engine());
    lumbra::Look::setAppearance(*view.engine(), arguments.contains(QStringLiteral("--contrast")), false);
    view.rootContext()->setContextProperty(QStringLiteral("symbolNames"), lumbra::Symbols::names());
    view.setInitialProperties({{QStringLiteral("menuShown"), arguments.contains(QStringLiteral("menu"))},
                               {QStringLiteral("alertShown"), arguments.contains(QStringLiteral("alert"))}});
    view.setSource(QUrl::fromLocalFile(QStringLiteral(GALLERY)));
    view.show();
    // Long enough for every transition to have ended.
    QTimer::singleShot(1200, &app, [&] {
        view.grabWindow().save(arguments.value(1, QStringLiteral("gallery.png")));
        app.quit();
    });
    return app.exec();
}
