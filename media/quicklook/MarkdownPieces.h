// What single pieces of a Markdown source come to: its head, its markup, its blanks, its tabs, its pictures' addresses.
// Pure functions, but for the one that looks for a file; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArray>
#include <QString>

namespace lumbra {

// What follows a head of "key: value" lines between dashes, which programs read: it is not part of the text.
QStringView withoutHead(QStringView text);

// The words of a piece of a web page.
QString withoutTags(QStringView markup);

// As many blanks as stand together are one.
QString withSingleBlanks(const QString& text);

// The file that a picture's address means, resolved; empty if it is not inside the folder, behind a link included.
Location pictureAt(const QString& address, const Location& folder);

// The parser hands out what a line of code begins with as blanks, and then the line as it is in the source. The tabs
// there take the place of the blanks at the end of `code` that they are as wide as. A line that is not of the source
// has none.
void takeTabsBefore(const char* line, const QByteArray& source, QString& code);

} // namespace lumbra
