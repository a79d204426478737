// SPDX-License-Identifier: GPL-3.0-or-later
#include "Scrubber.h"

#include "ScrubGeometry.h"
#include "media/AssetKey.h"
#include "media/Frames.h"
#include "media/Waveform.h"

namespace lumbra {

Scrubber::Scrubber(QObject* parent) : QObject(parent) {
    m_rest.setSingleShot(true);
    m_rest.setTimerType(Qt::PreciseTimer);
    m_rest.setInterval(rest);
    connect(&m_rest, &QTimer::timeout, this, &Scrubber::askForPreview);
    for (const auto& change : {&Scrubber::hoverChanged, &Scrubber::previewChanged, &Scrubber::trackChanged})
        connect(this, change, this, &Scrubber::cardFrameChanged);
}

void Scrubber::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    const bool isSame = assetKey(m_asset) == assetKey(asset); // but for its star
    m_asset = asset;
    if (!isSame) {
        setDragging(false);
        fillTrack();
        m_quarter.reset();
        setPreview({});
    }
    Q_EMIT assetChanged();
    followPointer();
}

void Scrubber::setEngine(PlayerEngine* engine) {
    if (m_engine == engine)
        return;
    if (m_engine)
        m_engine->disconnect(this);
    setDragging(false);
    m_engine = engine;
    if (engine) {
        connect(engine, &PlayerEngine::timeChanged, this, &Scrubber::playheadChanged);
        for (const auto changed : {&PlayerEngine::timeChanged, &PlayerEngine::isPlayingChanged})
            connect(engine, changed, this, &Scrubber::askForTrack);
        connect(engine, &PlayerEngine::durationChanged, this, [this] {
            Q_EMIT playheadChanged();
            Q_EMIT hoverChanged();
            followPointer();
        });
        connect(engine, &PlayerEngine::videoSizeChanged, this, &Scrubber::cardRiseChanged);
    }
    Q_EMIT engineChanged();
    Q_EMIT playheadChanged();
    Q_EMIT hoverChanged();
    Q_EMIT cardRiseChanged();
}

void Scrubber::setWidth(double width) {
    if (m_width == width)
        return;
    m_width = width;
    Q_EMIT widthChanged();
    Q_EMIT playheadChanged();
    Q_EMIT hoverChanged();
    followPointer();
}

void Scrubber::fillTrack() {
    m_strip.clear();
    m_bars.clear();
    m_request = {};
    Q_EMIT trackChanged();
    m_isTrackDue = true;
    // In the next turn: a view names the player after the file.
    QMetaObject::invokeMethod(this, &Scrubber::askForTrack, Qt::QueuedConnection);
}

// A film that is being opened needs the machine for its first picture.
void Scrubber::askForTrack() {
    const bool isOpening = m_engine && m_engine->isPlaying() && m_engine->time() <= 0;
    if (isOpening || !std::exchange(m_isTrackDue, false))
        return;
    if (m_asset.kind == AssetKind::video) {
        m_request = Frames::shared().stripFor(m_asset, frames, largestFrame, this, [this](const QList<QImage>& strip) {
            m_strip = strip;
            Q_EMIT trackChanged();
            previews(); // the machine has time now for the process to start
        });
    } else if (m_asset.kind == AssetKind::audio) {
        const std::stop_source stop;
        m_request = MediaRequest(stop);
        Waveform::bars(m_asset.url, barCount, stop.get_token())
            .then(this, [this, token = stop.get_token()](const QList<float>& bars) {
                if (token.stop_requested())
                    return;
                m_bars = bars;
                Q_EMIT trackChanged();
            });
    }
}

double Scrubber::playhead() const {
    if (!m_engine)
        return 0;
    return m_dragging ? m_dragX : ScrubGeometry::playedPart(m_engine->time(), m_engine->duration()) * m_width;
}

double Scrubber::timeAt(double x) const {
    return m_engine ? ScrubGeometry::timeAt(x, m_width, m_engine->duration()) : 0;
}

// The drag

void Scrubber::drag(double x) {
    if (!m_engine)
        return;
    if (!m_dragging) {
        setDragging(true);
        m_engine->wasPlayingBeforeScrub = m_engine->isPlaying();
        m_engine->pause();
    }
    m_dragX = m_engine->duration() > 0 ? std::clamp(x, 0.0, std::max(m_width, 0.0)) : 0;
    m_engine->seek(timeAt(x), false);
    Q_EMIT playheadChanged();
}

void Scrubber::release(double x) {
    if (!m_engine || !m_dragging)
        return;
    m_engine->seek(timeAt(x), true);
    setDragging(false);
    if (m_engine->wasPlayingBeforeScrub)
        m_engine->play();
}

void Scrubber::setDragging(bool dragging) {
    if (std::exchange(m_dragging, dragging) == dragging)
        return;
    Q_EMIT draggingChanged();
    Q_EMIT playheadChanged();
}

// The frame under the pointer

void Scrubber::hover(double x) {
    const double inside = std::clamp(x, 0.0, std::max(m_width, 0.0));
    if (m_hoverX == inside)
        return;
    m_hoverX = inside;
    Q_EMIT hoverChanged();
    followPointer();
}

void Scrubber::leave() {
    if (!m_hoverX)
        return;
    m_hoverX.reset();
    Q_EMIT hoverChanged();
    followPointer();
    setPreview({});
}

double Scrubber::hoverTime() const {
    return timeAt(hoverPoint());
}

// Begins to wait whenever the pointer comes into another quarter of a second, so that a fast sweep asks for nothing on
// its way.
void Scrubber::followPointer() {
    if (!m_hoverX || !isVideo()) {
        m_quarter.reset();
        m_rest.stop();
        return;
    }
    const qint64 quarter = ScrubGeometry::quarterOf(hoverTime());
    if (m_quarter == quarter)
        return;
    m_quarter = quarter;
    m_rest.start();
}

void Scrubber::askForPreview() {
    const double seconds = hoverTime();
    Q_EMIT previewAsked(seconds);
    previews().imageFor(m_asset.url, seconds, this, [this, url = m_asset.url](const QImage& frame) {
        if (!frame.isNull() && m_hoverX && url == m_asset.url)
            setPreview(frame);
    });
}

PreviewFrames& Scrubber::previews() {
    if (!m_previews)
        m_previews = std::make_unique<PreviewFrames>();
    return *m_previews;
}

void Scrubber::setPreview(const QImage& preview) {
    if (m_preview.cacheKey() == preview.cacheKey())
        return;
    m_preview = preview;
    Q_EMIT previewChanged();
}

QImage Scrubber::cardFrame() const {
    if (!m_preview.isNull() || m_strip.isEmpty() || !m_engine || m_engine->duration() <= 0)
        return m_preview;
    const auto slice = qsizetype(hoverTime() / m_engine->duration() * double(m_strip.size()));
    return m_strip[std::min(slice, m_strip.size() - 1)];
}

double Scrubber::cardLeft() const {
    return ScrubGeometry::cardLeft(hoverPoint(), m_width);
}

double Scrubber::cardRise() const {
    return ScrubGeometry::cardRise(m_engine ? m_engine->videoSize() : QSize());
}

double Scrubber::frameHeight() const {
    return ScrubGeometry::frameHeight(m_engine ? m_engine->videoSize() : QSize());
}

double Scrubber::cardWidth() {
    return ScrubGeometry::cardWidth;
}

} // namespace lumbra
