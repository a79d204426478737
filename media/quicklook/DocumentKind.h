// How a document is shown, and what it is called, by its name alone. Pure functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QString>

namespace lumbra {

enum class DocumentKind : quint8 {
    pages, // a PDF, or what may be one
    text,
    source, // text whose columns matter
    markdown,
    table,
    subtitles,
    webPage,
    other, // shown by the picture that it carries, and its facts
};

DocumentKind documentKindOf(const Location& file);

// "PDF document", "Word document"; "XYZ file" for what has no name of its own.
QString documentKindInWords(const Location& file);

} // namespace lumbra
