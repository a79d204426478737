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
}

void setAppearance(QQmlEngine& engine, bool highContrast, bool reducedMotion) {
    // The types of a module are known only once something has imported it.
    const auto type = [] { return qmlTypeId("Lumbra.Look", 1, 0, "Comfort"); };
    if (type() < 0)
        QQmlComponent(&engine).setData("import QtQml\nimport Lumbra.Look\nQtObject {}", QUrl());
    auto* comfort = engine.singletonInstance<Comfort*>(type());
    comfort->set(highContrast, reducedMotion);
}

} // namespace lumbra::Look
