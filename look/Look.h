// Prepares the process and an engine for the module Lumbra.Look.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QQmlEngine;

namespace lumbra::Look {

// Fonts and text rendering, once, after the application object and before the first window.
void prepareApplication();

// Where the engine finds the modules that are linked into the program, and those that it loads when they are needed.
// Every engine that shows our views needs it.
void prepareEngine(QQmlEngine& engine);

// Follows the desktop's accessibility settings; may be called again whenever they change.
void setAppearance(QQmlEngine& engine, bool highContrast, bool reducedMotion);

} // namespace lumbra::Look
