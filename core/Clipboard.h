// Copies files and text in every form that another program may ask for.
//
// Nothing is kept here. What is made of many files is made in the background and is there a moment later, unless
// something else has been copied by then. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"
#include "platform/Pasteboard.h"
#include "platform/Reader.h"

#include <QList>

#include <functional>

namespace lumbra::Clipboard {

// Puts the files on the pasteboard: the files themselves, and as text their names, a line each, so that a text field
// gets no paths. A lone picture follows as a picture, a PNG as its own bytes, once it has been read in the background;
// one that can't be read stays a file and a name. The reader must outlive the pasteboard.
//
// Calls `stand` once the files are there for others to paste: within the call, but for very many a moment later, and
// never where something else has been copied by then.
void write(
    const QList<Location>& urls, Pasteboard& pasteboard = Pasteboard::general(), Reader& reader = Reader::shared(),
    const std::function<void()>& stand = [] {});

// Replaces everything by the paths as text, a line each.
void writePaths(const QList<Location>& urls, Pasteboard& pasteboard = Pasteboard::general());

// Replaces everything by the text.
void copyText(const QString& text, Pasteboard& pasteboard = Pasteboard::general());

} // namespace lumbra::Clipboard
