// Starts a test of what the web engine shows. It draws with OpenGL, and so needs a display.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

namespace lumbra {

template <typename Test>
int runWithWebEngine(int argc, char** argv) {
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // tests may run as root, where there is none
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QGuiApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace lumbra
