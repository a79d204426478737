// Pictures that are rare enough to be left to FFmpeg's decoders: the whole file is one packet of one frame.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"

#include <QImage>
#include <QSize>

namespace lumbra::reader {

// As Pictures::thumbnail makes them; null for what is no such picture.
QImage framePicture(OpenedFile& file, QSize box);

} // namespace lumbra::reader
