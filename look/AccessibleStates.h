// Tells assistive technology which controls can't be used right now, and which rows are open. Qt 6.4 keeps that to
// itself for everything in Qt Quick: a screen reader would offer a button that does nothing.
//
// A row that can be opened is an item with the properties `expandable` and `expanded`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lumbra::AccessibleStates {

// Once, before anything is asked for its accessible interface. Main thread.
void install();

} // namespace lumbra::AccessibleStates
