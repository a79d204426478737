// SPDX-License-Identifier: GPL-3.0-or-later
#include "Skimmer.h"

#include "media/Durations.h"
#include "media/player/Timecode.h"

namespace lumbra {

Skimmer::Skimmer(QObject* parent)
    : Skimmer(
        [](const Asset& asset, QObject* context, Frames::Ready ready) {
            return Frames::shared().stripFor(asset, Skim::frames, Skim::longestSide, context, std::move(ready));
        },
        [](const Asset& asset) { return Durations::shared().seconds(asset); }, Skim::rest, parent) {}

Skimmer::Skimmer(Fetch fetch, Seconds seconds, std::chrono::milliseconds rest, QObject* parent)
    : QObject(parent), m_fetch(std::move(fetch)), m_seconds(std::move(seconds)) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(rest);
    connect(&m_rest, &QTimer::timeout, this, &Skimmer::fetch);
}

void Skimmer::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    // A star changes the asset and not its frames.
    const bool isAnother = m_asset.url != asset.url || m_asset.modified != asset.modified;
    m_asset = asset;
    if (isAnother) {
        m_frames.clear();
        rest();
        show();
    }
    Q_EMIT assetChanged();
}

void Skimmer::setHovering(bool hovering) {
    if (m_hovering == hovering)
        return;
    m_hovering = hovering;
    rest();
    show();
    Q_EMIT hoveringChanged();
}

void Skimmer::setX(double x) {
    if (m_x == x)
        return;
    m_x = x;
    show();
    Q_EMIT pointerChanged();
}

void Skimmer::setSize(double size) {
    if (m_size == size)
        return;
    m_size = size;
    show();
    Q_EMIT pointerChanged();
}

std::optional<double> Skimmer::position() const {
    if (!m_hovering || m_asset.kind != AssetKind::video)
        return {};
    return Skim::positionAt(m_x, m_size);
}

// Begins to wait, or takes back what was asked.
void Skimmer::rest() {
    m_request = {};
    if (m_hovering && m_asset.kind == AssetKind::video && m_frames.isEmpty())
        m_rest.start();
    else
        m_rest.stop();
}

void Skimmer::fetch() {
    m_request = m_fetch(m_asset, this, [this, url = m_asset.url](const QList<QImage>& frames) {
        if (!m_hovering || m_asset.url != url)
            return;
        m_frames = frames;
        show();
    });
}

void Skimmer::show() {
    const auto position = this->position();
    QImage frame;
    QString time;
    if (position && !m_frames.isEmpty()) {
        frame = m_frames.at(Skim::frameAt(*position, m_frames.size()));
        if (const auto seconds = m_seconds(m_asset))
            time = timecode(*position * *seconds, false);
    }
    if (frame.cacheKey() == m_frame.cacheKey() && time == m_time)
        return;
    m_frame = frame;
    m_time = time;
    Q_EMIT shownChanged();
}

} // namespace lumbra
