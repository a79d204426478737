// Pictures by libvips: it reads what Qt doesn't, knows every kind of colour profile, and shrinks very large pictures
// row by row without holding them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Makers.h"

namespace lumbra::reader {

QImage vipsPicture(OpenedFile& file, QSize box, Milliseconds limit);

} // namespace lumbra::reader
