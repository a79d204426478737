// SPDX-License-Identifier: GPL-3.0-or-later
#include "Frames.h"

#include "AssetKey.h"

#include <QPointer>

namespace lumbra {

namespace {

constexpr double tolerance = 0.5; // seconds

// In parts of the film: the middles of its slices.
QList<double> momentsOf(int count) {
    QList<double> moments;
    for (int i = 0; i < count; ++i)
        moments.append((i + 0.5) / count);
    return moments;
}

} // namespace

Frames::Frames(Reader& reader, QObject* parent) : QObject(parent), m_reader(reader) {}

Frames& Frames::shared() {
    static auto* const one = new Frames(Reader::lasting()); // static objects may outlive the application's
    return *one;
}

MediaRequest Frames::stripFor(const Asset& asset, int count, int maxSide, QObject* context, Ready ready,
                              Reader::Urgency urgency) {
    const QString key = assetKey(asset) + u'|' + QString::number(count);
    if (const auto known = m_strips.constFind(key); known != m_strips.constEnd()) {
        ready(*known);
        return {};
    }
    if (count < 1) {
        ready({});
        return {};
    }
    const std::stop_source stop;
    const Reader::FramesWish wish{.moments = momentsOf(std::min(count, int(reader::mostFrames))),
                                  .unit = Reader::FramesWish::Unit::durations,
                                  .tolerance = tolerance,
                                  .box = QSize(maxSide, maxSide)};
    m_reader.frames(asset.url, wish, urgency, stop.get_token())
        .then(this, [this, key, receiver = QPointer<QObject>(context), ready = std::move(ready),
                     token = stop.get_token()](const std::optional<Reader::Frames>& strip) {
            if (strip && strip->isWhole)
                keep(key, strip->images);
            if (receiver && !token.stop_requested())
                ready(strip ? strip->images : QList<QImage>());
        });
    return MediaRequest(stop);
}

void Frames::keep(const QString& key, const QList<QImage>& strip) {
    if (!m_strips.contains(key)) // else two asked for it at the same time
        m_arrival.append(key);
    m_strips.insert(key, strip);
    while (m_arrival.size() > limit)
        m_strips.remove(m_arrival.takeFirst());
}

} // namespace lumbra
