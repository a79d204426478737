// The backdrop of a picture: the picture itself, tiny, blurred and a little more colourful, to be stretched behind it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace lumbra {

// At most 24 pixels a side, premultiplied, with the picture's proportions; null for a null picture. Any thread.
QImage blurredBackdrop(const QImage& picture);

} // namespace lumbra
