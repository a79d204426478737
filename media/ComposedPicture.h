// A picture over its glow inside rounded corners as one image, for windows that are drawn without a graphics processor.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSizeF>

namespace lumbra {

// Where a picture stands whole in a frame, as large as the frame allows.
QRectF fittedInto(const QSizeF& frame, const QSize& picture);

// The frame and its radius are in points, `scale` is pixels a point. Either image may be null.
QImage composedPicture(const QImage& picture, const QImage& glow, const QSizeF& frame, double radius, double scale);

} // namespace lumbra
