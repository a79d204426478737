// Pictures by libvips, for makers that leave it some of theirs.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Makers.h"

namespace lumbra::reader {

QImage vipsPicture(OpenedFile& file, QSize box, Milliseconds limit);

} // namespace lumbra::reader
