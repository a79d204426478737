// SPDX-License-Identifier: GPL-3.0-or-later
#include "Look.h"

#include "AccessibleStates.h"
#include "Comfort.h"
#include "Fonts.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

namespace lumbra::Look {

void prepareApplication() {
    QFont font(Fonts::text());
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    // Small text of whole pixels is sharper by the font engine than by distance fields.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    AccessibleStates::install();
}

void prepareEngine(QQmlEngine& engine) {
    engine.addImportPath(QStringLiteral(":/qml"));
    // Plugins that nothing links lie beside the program, or in the libraries of the installation.
    const QString here = QCoreApplication::applicationDirPath();
    engine.addImportPath(here + QStringLiteral("/qml"));
    engine.addImportPath(here + QStringLiteral("/../lib/lumbra/qml"));
    // A module's types are known only once something has imported it, and comfort is set before the first view.
    QQmlComponent(&engine).setData("import QtQml\nimport Lumbra.Look\nQtObject {}", QUrl());
}

void setAppearance(QQmlEngine& engine, bool highContrast, bool reducedMotion) {
    auto* comfort = engine.singletonInstance<Comfort*>(qmlTypeId("Lumbra.Look", 1, 0, "Comfort"));
    comfort->set(highContrast, reducedMotion);
}

} // namespace lumbra::Look
