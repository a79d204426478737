// Where things stand on the scrubber: times along its track, what the track is made of, and the card over it. Pure
// functions; points and seconds.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QSize>

#include <algorithm>

namespace lumbra::ScrubGeometry {

// The card that shows the frame under the pointer: its width, the largest height of its frame, what it takes beside the
// frame, and how high it rises over the track while the film's proportions are not known.
inline constexpr double cardWidth = 192;
inline constexpr double tallestFrame = 200;
inline constexpr double besideFrame = 44;
inline constexpr double usualRise = 152;

// The time at a point of the track; a point beyond an end is that end.
inline double timeAt(double x, double width, double duration) {
    return width > 0 && duration > 0 ? std::clamp(x, 0.0, width) / width * duration : 0;
}

// How much of the file has played, 0 to 1.
inline double playedPart(double time, double duration) {
    return duration > 0 ? std::clamp(time / duration, 0.0, 1.0) : 0;
}

// Times of one quarter of a second show the same frame.
inline qint64 quarterOf(double time) {
    return qint64(time * 4);
}

// The height of the card's frame, and how far the card's upper edge lies above the track.
inline double frameHeight(const QSize& videoSize) {
    if (videoSize.isEmpty())
        return usualRise - besideFrame;
    return std::min(cardWidth * videoSize.height() / videoSize.width(), tallestFrame);
}
inline double cardRise(const QSize& videoSize) {
    return frameHeight(videoSize) + besideFrame;
}

// The card's left edge: its middle is over the pointer as far as the track's ends allow.
inline double cardLeft(double x, double width) {
    return std::max(0.0, std::min(x - cardWidth / 2, width - cardWidth));
}

// The place of one of `count` frames side by side.
inline QRectF frameSlot(qsizetype position, qsizetype count, const QSizeF& track) {
    const double width = track.width() / double(count);
    return {double(position) * width, 0, width, track.height()};
}

// The bar of one of `count` values between 0 and 1.
inline QRectF bar(qsizetype position, qsizetype count, float value, const QSizeF& track) {
    constexpr double gap = 1.5, narrowest = 1.5, lowest = 3, margin = 8; // between bars; above and below together
    const double slot = track.width() / double(count);
    const double width = std::max(slot - gap, narrowest);
    const double height = std::max((track.height() - margin) * double(value), lowest);
    return {(double(position) + 0.5) * slot - width / 2, (track.height() - height) / 2, width, height};
}

} // namespace lumbra::ScrubGeometry
