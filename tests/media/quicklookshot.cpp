// Shows a document, or a film in the web view, as the screening room does, and draws the window into a picture:
// quicklookshot FILE PICTURE [WIDTH HEIGHT [scroll]]. Made only when asked for.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/Look.h"
#include "platform/Location.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

#include <memory>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

constexpr char scene[] = R"(
import QtQuick
import Lumbra.Look
import Lumbra.Media

Rectangle {
    id: room
    property var path
    property url url
    property bool isFilm
    color: Theme.stage

    Rectangle {
        anchors { fill: parent; margins: Theme.pageMargin; topMargin: Theme.headerHeight; bottomMargin: Theme.headerHeight }
        radius: Theme.radiusSheet
        color: Theme.pane
        visible: !room.isFilm
        QuickLookView { anchors.fill: parent; path: room.path }
    }
    Loader {
        anchors.fill: parent
        active: room.isFilm
        sourceComponent: WebVideoView { path: room.url; autoplay: true }
    }
})";

} // namespace

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QGuiApplication application(argc, argv);
    Look::prepareApplication();
    const QStringList arguments = QGuiApplication::arguments();
    const Location file(arguments.value(1));
    const bool isFilm = file.extension() == "webm" || file.extension() == "mkv" || file.extension() == "ogv";

    QQmlEngine engine;
    Look::prepareEngine(engine);
    QQmlComponent component(&engine);
    component.setData(scene, QUrl());
    const std::unique_ptr<QQuickItem> root(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
        {{QStringLiteral("path"), QVariant::fromValue(isFilm ? Location() : file)},
         {QStringLiteral("url"), file.toUrl()},
         {QStringLiteral("isFilm"), isFilm}})));
    if (!root)
        qFatal("%s", qPrintable(component.errorString()));
    QQuickWindow window;
    window.resize(arguments.value(3, QStringLiteral("1440")).toInt(),
                  arguments.value(4, QStringLiteral("900")).toInt());
    root->setSize(window.size());
    root->setParentItem(window.contentItem());
    window.show();
    if (const double scrolled = arguments.value(5).toDouble(); scrolled > 0) {
        QTimer::singleShot(1500, &window, [&] {
            auto* const stage =
                root->findChild<QObject*>(QStringLiteral("documentStage"))->property("item").value<QObject*>();
            QMetaObject::invokeMethod(stage, "scrollBy", Q_ARG(double, scrolled));
        });
    }
    QTimer::singleShot(3500, &application, [&] {
        window.grabWindow().save(arguments.value(2, QStringLiteral("document.png")));
        QGuiApplication::quit();
    });
    return QGuiApplication::exec();
}
