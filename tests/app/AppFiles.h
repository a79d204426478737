// Real media for the application's tests: pictures of one plain colour, so that a pixel of the screen tells which
// picture stands there, and clips and sounds made by FFmpeg.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QColor>
#include <QSize>

#include <initializer_list>

namespace lumbra::AppFiles {

// Each makes the folder it needs; fatal when the file can't be made. The format is the name's extension.
void picture(const Location& location, QColor colour, QSize size = {640, 480});
void clip(const Location& location, QColor colour, int seconds = 2);
void sound(const Location& location, int seconds = 2);
void text(const Location& location, const QByteArray& words);

// Notes in the database of insights, as another process does it, that a word or two were understood in the files. Their
// paths are relative to the library's folder. Fatal when it can't be done.
void insight(const Location& library, std::initializer_list<const char*> files, const char* words);

// A colour of its own for each number, far from its neighbours and from everything that the window itself draws.
QColor colour(int number);

// True when two colours look alike, compression and blending allowed for.
bool alike(QColor a, QColor b);

} // namespace lumbra::AppFiles
