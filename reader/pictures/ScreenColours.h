// Pictures with a profile of their own, brought into the screen's colours.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace lumbra::reader {

// By the image's colour space; as it is when it has none, or one that comes to the same.
QImage inScreenColours(QImage image);

} // namespace lumbra::reader
