// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenColours.h"

#include <QColorSpace>
#include <QColorTransform>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace lumbra::reader {

namespace {

// True where a conversion would hardly be seen. Many PNG files say in numbers what comes to the screen's own colours,
// but for its darkest tones; to take them at their word would lighten or darken those.
bool isAsGoodAsScreen(const QColorSpace& colours, const QColorSpace& screen) {
    constexpr QRgb samples[] = {0xff804040, 0xff408040, 0xff404080, 0xffc8c8c8, 0xffff8000, 0xff00ff80};
    constexpr int tolerance = 3;
    const QColorTransform transform = colours.transformationToColorSpace(screen);
    return std::all_of(std::begin(samples), std::end(samples), [&transform](QRgb sample) {
        const QRgb mapped = transform.map(sample);
        return std::abs(qRed(mapped) - qRed(sample)) <= tolerance
               && std::abs(qGreen(mapped) - qGreen(sample)) <= tolerance
               && std::abs(qBlue(mapped) - qBlue(sample)) <= tolerance;
    });
}

} // namespace

QImage inScreenColours(QImage image) {
    const QColorSpace screen(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != screen && !isAsGoodAsScreen(image.colorSpace(), screen))
        image.convertToColorSpace(screen);
    return image;
}

} // namespace lumbra::reader
