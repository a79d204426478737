// The window of an application, once all that it shows is made.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/App.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

namespace lumbra {

// Shows it, active and filled; a null pointer if that takes too long.
inline QQuickWindow* shownWindow(App& app) {
    if (!app.show())
        return nullptr;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows) {
        auto* const quick = qobject_cast<QQuickWindow*>(window);
        if (!quick || !quick->isVisible())
            continue;
        quick->requestActivate();
        const auto isFilled = [quick] { return quick->property("overlays").value<QObject*>() != nullptr; };
        const bool isReady =
            QTest::qWaitForWindowActive(quick, lumbra::patience) && QTest::qWaitFor(isFilled, patience);
        return isReady ? quick : nullptr;
    }
    return nullptr;
}

} // namespace lumbra
