// Films: the first picture that is not near black after a tenth of the film.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"

#include <QImage>
#include <QSize>

#include <chrono>

namespace lumbra::reader {

// As Pictures::thumbnail makes them; null for what has no moving pictures.
QImage filmPicture(OpenedFile& file, QSize box, std::chrono::milliseconds limit);

} // namespace lumbra::reader
