// SPDX-License-Identifier: GPL-3.0-or-later
#include "Blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lumbra {

namespace {

constexpr int longestSide = 24;
constexpr float deviation = 2.5f; // of the Gaussian, in pixels of the small picture
constexpr float saturation = 1.3f;
constexpr int reach = 8; // three deviations: what lies further weighs nothing

using Pixel = std::array<float, 4>; // premultiplied red, green, blue, alpha

std::array<float, 2 * reach + 1> gaussian() {
    std::array<float, 2 * reach + 1> weights;
    float sum = 0;
    for (int i = -reach; i <= reach; ++i)
        sum += weights[size_t(i + reach)] = std::exp(-float(i * i) / (2 * deviation * deviation));
    for (float& weight : weights)
        weight /= sum;
    return weights;
}

// One pass along a line of pixels that are `stride` apart. Beyond its ends the line goes on as it ended, so that the
// blur pulls in no transparent border.
void blurLine(const Pixel* source, Pixel* target, int count, int stride) {
    static const auto weights = gaussian();
    for (int i = 0; i < count; ++i) {
        Pixel sum{};
        for (int offset = -reach; offset <= reach; ++offset) {
            const Pixel& pixel = source[std::clamp(i + offset, 0, count - 1) * stride];
            for (size_t channel = 0; channel < sum.size(); ++channel)
                sum[channel] += weights[size_t(offset + reach)] * pixel[channel];
        }
        target[i * stride] = sum;
    }
}

void saturate(Pixel& pixel) {
    const float luminance = 0.2126f * pixel[0] + 0.7152f * pixel[1] + 0.0722f * pixel[2];
    for (size_t channel = 0; channel < 3; ++channel)
        pixel[channel] = std::clamp(luminance + (pixel[channel] - luminance) * saturation, 0.f, pixel[3]);
}

} // namespace

QImage blurredBackdrop(const QImage& picture) {
    if (picture.isNull())
        return {};
    QSize size = picture.size().scaled(longestSide, longestSide, Qt::KeepAspectRatio);
    size = size.expandedTo(QSize(1, 1));
    QImage small = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    const int width = small.width();
    const int height = small.height();
    std::vector<Pixel> pixels(size_t(width) * size_t(height));
    std::vector<Pixel> passed(pixels.size());
    for (int y = 0; y < height; ++y) {
        const uchar* line = small.constScanLine(y);
        for (int x = 0; x < width; ++x)
            for (size_t channel = 0; channel < 4; ++channel)
                pixels[size_t(y * width + x)][channel] = line[size_t(x) * 4 + channel];
    }
    for (int y = 0; y < height; ++y)
        blurLine(&pixels[size_t(y * width)], &passed[size_t(y * width)], width, 1);
    for (int x = 0; x < width; ++x)
        blurLine(&passed[size_t(x)], &pixels[size_t(x)], height, width);
    for (int y = 0; y < height; ++y) {
        uchar* line = small.scanLine(y);
        for (int x = 0; x < width; ++x) {
            Pixel& pixel = pixels[size_t(y * width + x)];
            saturate(pixel);
            for (size_t channel = 0; channel < 4; ++channel)
                line[size_t(x) * 4 + channel] = uchar(std::lround(pixel[channel]));
        }
    }
    return small.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace lumbra
