// SPDX-License-Identifier: GPL-3.0-or-later
#include "Glow.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace lumbra::Glow {

namespace {

// Pixels of the canvas.
constexpr double blurRadius = 9;
constexpr double innerRadius = 4;
constexpr double outerRadius = 70;

constexpr double saturation = 1.5;
constexpr double soundOpacity = 0.5;

// Of what the room lets through, and of the light that then lies on it.
constexpr double mostStrength = 0.5;
constexpr double brightestLight = 0.26;

// A picture is first thinned out to this, since a blur forgives it and a large one would take long to average.
constexpr QSize thinned{640, 400};

constexpr auto format = QImage::Format_ARGB32_Premultiplied;

using Pixel = std::array<int, 4>;

// Three passes of a moving mean come as near to a Gaussian as anybody sees, and cost the same for every radius. These
// are half the widths of the three whose variances add up to the radius squared.
std::array<int, 3> reaches() {
    constexpr int passes = 3;
    const double variance = blurRadius * blurRadius;
    const int ideal = int(std::sqrt(12 * variance / passes + 1));
    const int lower = ideal % 2 == 0 ? ideal - 1 : ideal;
    const double wide = (12 * variance - passes * lower * (lower + 4) - 3 * passes) / (-4.0 * lower - 4);
    std::array<int, 3> found;
    for (int pass = 0; pass < passes; ++pass)
        found[size_t(pass)] = (pass < std::lround(wide) ? lower : lower + 2) / 2;
    return found;
}

// Along a line of pixels that are `stride` apart. Beyond its ends it goes on as it ended, so that no dark border comes
// in.
void average(const Pixel* source, Pixel* target, int count, int stride, int reach) {
    const auto at = [&](int place) -> const Pixel& { return source[std::clamp(place, 0, count - 1) * stride]; };
    const int width = 2 * reach + 1;
    Pixel sum{};
    for (int place = -reach; place <= reach; ++place)
        for (size_t channel = 0; channel < sum.size(); ++channel)
            sum[channel] += at(place)[channel];
    for (int place = 0; place < count; ++place) {
        for (size_t channel = 0; channel < sum.size(); ++channel) {
            target[place * stride][channel] = sum[channel] / width;
            sum[channel] += at(place + reach + 1)[channel] - at(place - reach)[channel];
        }
    }
}

// Values are eight bits and as many below the point, so that the passes do not round the darkest tones away.
constexpr int fraction = 256;

QRgb saturated(const Pixel& pixel) {
    const double luminance = 0.2126 * pixel[0] + 0.7152 * pixel[1] + 0.0722 * pixel[2];
    const auto channel = [&](size_t which) {
        const double value = luminance + (pixel[which] - luminance) * saturation;
        return int(std::lround(std::clamp(value, 0.0, double(pixel[3])) / fraction));
    };
    return qRgba(channel(0), channel(1), channel(2), int(std::lround(double(pixel[3]) / fraction)));
}

QImage blurred(const QImage& drawn) {
    const int width = drawn.width();
    const int height = drawn.height();
    std::vector<Pixel> pixels(size_t(width) * size_t(height));
    std::vector<Pixel> passed(pixels.size());
    for (int y = 0; y < height; ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(drawn.constScanLine(y));
        for (int x = 0; x < width; ++x)
            pixels[size_t(y * width + x)] = {qRed(line[x]) * fraction, qGreen(line[x]) * fraction,
                                             qBlue(line[x]) * fraction, qAlpha(line[x]) * fraction};
    }
    static const std::array<int, 3> all = reaches();
    for (const int reach : all) {
        for (int y = 0; y < height; ++y)
            average(&pixels[size_t(y * width)], &passed[size_t(y * width)], width, 1, reach);
        for (int x = 0; x < width; ++x)
            average(&passed[size_t(x)], &pixels[size_t(x)], height, width, reach);
    }
    QImage made(drawn.size(), format);
    for (int y = 0; y < height; ++y) {
        auto* const line = reinterpret_cast<QRgb*>(made.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = saturated(pixels[size_t(y * width + x)]);
    }
    return made;
}

QImage clear() {
    QImage image(canvas, format);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

QImage ofPicture(const QImage& picture) {
    if (picture.isNull())
        return {};
    const bool isLarge = picture.width() > thinned.width() || picture.height() > thinned.height();
    const QImage small = isLarge ? picture.scaled(thinned) : picture;
    return blurred(small.scaled(canvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(format));
}

QImage ofSound(const QColor& accent, double centre) {
    QImage image = clear();
    const QRectF whole = image.rect().toRectF();
    QRadialGradient light(QPointF(centre * whole.width(), whole.center().y()), outerRadius);
    QColor inner = accent;
    inner.setAlphaF(float(soundOpacity));
    QColor outer = accent;
    outer.setAlphaF(0);
    light.setColorAt(innerRadius / outerRadius, inner);
    light.setColorAt(1, outer);
    QPainter painter(&image);
    painter.fillRect(image.rect(), light);
    painter.end();
    return blurred(image);
}

double strengthOf(const QImage& glow) {
    int brightest = 1;
    for (int y = 0; y < glow.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(glow.constScanLine(y));
        for (int x = 0; x < glow.width(); ++x)
            brightest = std::max(brightest, qGray(line[x]));
    }
    return std::min(mostStrength, brightestLight * 255 / brightest);
}

QImage between(const QImage& from, const QImage& to, double part) {
    if (from.isNull() && to.isNull())
        return {};
    const QImage first = from.isNull() ? clear() : from;
    const QImage second = to.isNull() ? clear() : to;
    QImage made(canvas, format);
    const int share = std::clamp(int(std::lround(part * fraction)), 0, fraction);
    for (int y = 0; y < canvas.height(); ++y) {
        const uchar* const a = first.constScanLine(y);
        const uchar* const b = second.constScanLine(y);
        uchar* const line = made.scanLine(y);
        for (int byte = 0; byte < canvas.width() * 4; ++byte)
            line[byte] = uchar((a[byte] * (fraction - share) + b[byte] * share + fraction / 2) / fraction);
    }
    return made;
}

} // namespace lumbra::Glow
