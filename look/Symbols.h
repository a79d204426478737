// The one table of symbols: what each of the product's symbol names looks like.
//
// Most are glyphs of the Material Design icon font that is installed on the system; what that font lacks is drawn in
// look/symbols. All stand in a square of 24 units. Without the font its symbols show as a plain dot, so that every
// control keeps its place and its meaning (name, tool tip) survives.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QStringList>

namespace lumbra::Symbols {

// Every name that can be shown, sorted.
QStringList names();

bool contains(const QString& name);

// Whether the installed icon font was found. Asks the disk at the first call.
bool fontFound();

// The symbol in a square of `pixels` device pixels, premultiplied. Empty for an unknown name. Main thread only.
QImage image(const QString& name, int pixels, const QColor& color);

} // namespace lumbra::Symbols
