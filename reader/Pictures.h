// Small pictures of files: one maker for each format, in one table.
//
// A maker gets the opened file and yields an upright picture in sRGB with the file's proportions, at most as large as
// the box; nothing when the file is broken, too large or empty. It may throw std::bad_alloc.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>

#include <chrono>

namespace lumbra::reader {

class OpenedFile;

namespace Pictures {

// Format_RGB32 for opaque pictures, Format_ARGB32_Premultiplied for others; null when there is none. `limit` is the
// time that there is for it; a maker that can work on and on looks at it.
QImage thumbnail(OpenedFile& file, QSize box, std::chrono::milliseconds limit);

// How many pixels the image has, upright, as its header says; empty for what is no image of pixels, and where the
// header does not tell.
QSize pixels(OpenedFile& file);

// Starts the libraries that need more than reading files to start.
void warmUp();

} // namespace Pictures

} // namespace lumbra::reader
