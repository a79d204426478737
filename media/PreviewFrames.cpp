// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewFrames.h"

#include <QPointer>

#include <algorithm>

namespace lumbra {

namespace {

constexpr double tolerance = 0.15; // seconds

} // namespace

PreviewFrames::PreviewFrames(QObject* parent, const QByteArray& program)
    : QObject(parent), m_reader({.children = 1, .program = program}) {
    m_reader.warmUp();
}

void PreviewFrames::imageFor(const Location& path, double seconds, QObject* context, Ready ready) {
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    const Reader::FramesWish wish{
        .moments = {std::max(0.0, seconds)}, .tolerance = tolerance, .box = QSize(maxSide, maxSide), .keepsOpen = true};
    m_reader.frames(path, wish, Reader::Urgency::visible, stop.get_token())
        .then(this, [receiver = QPointer<QObject>(context), ready = std::move(ready),
                     token = stop.get_token()](const std::optional<Reader::Frames>& frames) {
            if (receiver && !token.stop_requested())
                ready(frames ? frames->images.value(0) : QImage());
        });
}

} // namespace lumbra
