// The libraries of the web engine, loaded ahead: that takes half the time that its first view does, and is the half
// that need not be done where the windows are drawn.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lumbra::WebLibrary {

// In the background, once in the life of the process; nothing where the engine may not start. For when a page or a film
// of the web is near, never before.
void loadAhead();

} // namespace lumbra::WebLibrary
