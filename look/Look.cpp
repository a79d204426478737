// SPDX-License-Identifier: GPL-3.0-or-later
#include "Look.h"

#include "Comfort.h"
#include "Fonts.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>

namespace lumbra::Look {

void prepareApplication() {
    QFont font(Fonts::text());
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    // Small text of whole pixels is sharper by the font engine than by distance fields.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
}

void prepareEngine(QQmlEngine& engine) {
    engine.addImportPath(QStringLiteral(":/qml"));
}

void setAppearance(bool highContrast, bool reducedMotion) {
    Comfort& comfort = Comfort::shared();
    comfort.setProperty("highContrast", highContrast);
    comfort.setProperty("reducedMotion", reducedMotion);
}

} // namespace lumbra::Look
