// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerEngine.h"

#include "MpvAnswers.h"
#include "PictureInPicture.h"
#include "Shuttle.h"
#include "SurfaceSwitch.h"
#include "Timecode.h"
#include "VideoSurface.h"
#include "core/PreferenceKeys.h"

#include <mpv/client.h>

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

using namespace std::chrono_literals;

constexpr auto tick = 33ms; // thirty a second

// Positions are whole numbers of this part of a second, which all usual frame rates divide.
constexpr double timescale = 600;

// Nearer to its end than this a file counts as ended; how far a press on J jumps where nothing runs backward. Seconds.
constexpr double endMargin = 0.05;
constexpr double jumpBack = 2;

double volumeOf(const Preferences& preferences) {
    return std::clamp(preferences.value(PreferenceKeys::playerVolume), 0.0, 1.0);
}

} // namespace

PlayerEngine::PlayerEngine(Preferences& preferences, const MpvHandle::Options& options, QObject* parent)
    : QObject(parent), m_preferences(preferences) {
    m_loop = preferences.value(PreferenceKeys::playerLoop);
    m_volume = volumeOf(preferences);
    m_mpv = std::make_shared<MpvHandle>(options, [this](const mpv_event& event) { hear(event); });
    m_mpv->setStarted([this](bool runs) { hearStart(runs); });
    m_surfaces = std::make_unique<SurfaceSwitch>(m_mpv, quint64(Asked::surface));
    // A film that stands makes no new picture by itself.
    connect(m_surfaces.get(), &SurfaceSwitch::made, this, [this] {
        if (!m_isLoaded || m_isPlaying)
            return;
        m_movements.seek(m_time, true);
        move();
    });

    m_clock.setTimerType(Qt::PreciseTimer);
    m_clock.setInterval(tick);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        // A player that does not answer is not asked again and again.
        if (m_isLoaded && !m_movements.isUnderWay() && !std::exchange(m_isPositionAsked, true))
            m_mpv->get("time-pos", MPV_FORMAT_DOUBLE, tag(Asked::position));
    });
}

PlayerEngine::~PlayerEngine() {
    m_mpv->fallSilent();
    m_pip.reset();
}

void PlayerEngine::addSurface(VideoSurface* surface) {
    m_surfaces->add(surface);
    if (m_pip || !PictureInPicture::isSupported())
        return;
    m_pip = std::make_unique<PictureInPicture>(*this);
    Q_EMIT pipChanged();
}

// What is asked for

// A room that shows nothing but stills never needs a player.
void PlayerEngine::start() {
    if (m_mpv->isStarted())
        return;
    m_mpv->start();
    m_mpv->set("volume", m_volume * 100);
    m_mpv->set("mute", m_muted.value());
    m_mpv->observe("time-pos", MPV_FORMAT_DOUBLE, quint64(Asked::watch));
    m_mpv->observe("eof-reached", MPV_FORMAT_FLAG, quint64(Asked::watch));
}

void PlayerEngine::load(const Location& url, bool autoplay) {
    if (url == m_url)
        return;
    start();
    m_url = url;
    ++m_file;
    m_entry = 0;
    m_isBegun = m_isLoaded = m_hasFailed = m_isSound = m_isSeekable = m_hasVideo = m_isAtEnd = false;
    m_movements.reset();
    m_movements.begin();
    if (!autoplay)
        setRate(0);
    turn(false);
    m_mpv->load(url, tag(Asked::loading));

    m_glowFrame = QImage();
    m_time = 0;
    m_duration = 0;
    m_videoSize = QSize();
    m_codec = QString();
    m_shuttle = 1;
    setSight(m_sight == Sight::nothing ? Sight::nothing : Sight::before);
    if (!m_isAvailable)
        failed();
    if (autoplay)
        play();
}

void PlayerEngine::stop() {
    setRate(0);
    m_mpv->command({"stop"});
    m_url = Location();
    ++m_file;
    m_isLoaded = m_isAtEnd = false;
    m_movements.reset();
    setSight(Sight::nothing);
    if (m_pip)
        m_pip->stop();
}

void PlayerEngine::play() {
    if (m_isAtEnd || (m_duration > 0 && m_time >= m_duration - endMargin))
        seek(0, true);
    m_shuttle = 1;
    setRate(m_speed);
}

void PlayerEngine::pause() {
    setRate(0);
}

void PlayerEngine::seek(double to, bool exact) {
    double target = m_duration > 0 ? std::min(to, m_duration.value()) : to;
    target = std::isfinite(target) ? std::max(target, 0.0) : 0;
    target = std::round(target * timescale) / timescale;
    setTime(target);
    if (m_url.isEmpty())
        return;
    m_isAtEnd = false;
    m_movements.seek(target, exact);
    move();
}

void PlayerEngine::step(int count) {
    pause();
    if (!m_hasVideo)
        return;
    m_movements.step(count);
    move();
}

void PlayerEngine::shuttle(int direction) {
    if (direction == 0) {
        pause();
        m_shuttle = 1;
        return;
    }
    m_shuttle = shuttleAfter(m_shuttle, direction, m_isPlaying);
    if (m_shuttle < 0 && !(m_isSeekable && m_hasVideo)) {
        m_shuttle = -1;
        seek(m_time - jumpBack, true);
        return;
    }
    setRate(m_shuttle);
}

void PlayerEngine::setSpeed(double speed) {
    if (!std::isfinite(speed) || speed <= 0)
        return;
    m_speed = speed;
    if (m_isPlaying)
        setRate(speed);
}

void PlayerEngine::setLoop(bool loop) {
    m_loop = loop;
    m_preferences.setValue(PreferenceKeys::playerLoop, loop);
}

void PlayerEngine::setVolume(double volume) {
    if (!std::isfinite(volume))
        return;
    m_volume = std::clamp(volume, 0.0, 1.0);
    m_mpv->set("volume", m_volume * 100);
    m_preferences.setValue(PreferenceKeys::playerVolume, m_volume);
}

void PlayerEngine::setMuted(bool muted) {
    m_muted = muted;
    m_mpv->set("mute", muted);
}

// 0 stands; negative runs backward.
void PlayerEngine::setRate(double rate) {
    if (m_url.isEmpty() || m_hasFailed)
        rate = 0;
    m_rate = rate;
    turn(rate < 0);
    if (rate != 0) {
        m_mpv->set("speed", std::abs(rate));
        m_clock.start();
    } else {
        m_clock.stop();
        if (m_isLoaded)
            m_mpv->get("time-pos", MPV_FORMAT_DOUBLE, tag(Asked::position));
    }
    m_mpv->set("pause", rate == 0);
    m_isPlaying = rate != 0;
}

void PlayerEngine::turn(bool backward) {
    if (std::exchange(m_isBackward, backward) == backward)
        return;
    // Sound keeps the player from starting backward for seconds, and is of no use then.
    m_mpv->set("aid", backward ? "no" : "auto");
    m_mpv->set("play-dir", backward ? "backward" : "forward");
    if (!m_isLoaded)
        return;
    // To turn is to seek, and the player would go to where it was before it has got to where it is sent.
    m_movements.reset();
    m_movements.seek(m_time, true);
    move();
}

void PlayerEngine::move() {
    while (const std::optional<QByteArrayList> command = m_movements.next())
        m_mpv->command(*command, tag(Asked::moving));
}

void PlayerEngine::setTime(double time) {
    m_time = std::isfinite(time) ? time : 0;
}

void PlayerEngine::setSight(Sight sight) {
    m_sight = sight;
    m_surfaces->update();
}

void PlayerEngine::takeGlow(const QImage& image, quint64 file) {
    if (file == pictureOf())
        m_glowFrame = image;
}

// What the player reports

void PlayerEngine::hearStart(bool runs) {
    m_isAvailable = runs;
    if (runs)
        m_surfaces->update();
    else
        failed();
}

void PlayerEngine::hear(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
    case MPV_EVENT_GET_PROPERTY_REPLY:
    case MPV_EVENT_SET_PROPERTY_REPLY:
        hearReply(event);
        break;
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        if (!m_isLoaded || !property.data)
            break;
        if (property.format == MPV_FORMAT_FLAG)
            atEnd(*static_cast<const int*>(property.data));
        else if (!m_isPlaying) // while it runs the clock asks, and no more often than is needed
            hearValue(Asked::position, property.format, property.data);
        break;
    }
    case MPV_EVENT_START_FILE:
        m_isBegun = m_entry != 0 && static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == m_entry;
        break;
    case MPV_EVENT_FILE_LOADED:
        if (m_isBegun)
            fileLoaded();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (m_isLoaded)
            arrived();
        break;
    case MPV_EVENT_END_FILE: {
        const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
        if (m_entry != 0 && end.playlist_entry_id == m_entry)
            m_isLoaded&& end.error == MPV_ERROR_VO_INIT_FAILED ? loadAgain() : failed();
        break;
    }
    default:
        break;
    }
}

void PlayerEngine::hearReply(const mpv_event& event) {
    const auto asked = Asked(event.reply_userdata & 0xff);
    if (asked == Asked::surface) {
        const auto* const output = static_cast<const mpv_event_property*>(event.data);
        const bool isText = event.error >= 0 && output->format == MPV_FORMAT_STRING;
        m_surfaces->drawsWith(isText ? *static_cast<char* const*>(output->data) : nullptr);
        return;
    }
    if (asked == Asked::position)
        m_isPositionAsked = false;
    if (event.reply_userdata >> 8 != m_file)
        return; // of another file
    const bool isRefused = event.error < 0;
    if (asked == Asked::loading) {
        if (isRefused)
            failed();
        else
            m_entry = entryOf(static_cast<const mpv_event_command*>(event.data)->result);
    } else if (asked == Asked::moving) {
        if (isRefused)
            arrived();
    } else if (event.event_id == MPV_EVENT_GET_PROPERTY_REPLY && !isRefused) {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        hearValue(asked, property.format, property.data);
    }
}

void PlayerEngine::hearValue(Asked asked, int format, const void* data) {
    if (format == MPV_FORMAT_DOUBLE) {
        const double value = *static_cast<const double*>(data);
        if (asked == Asked::duration && std::isfinite(value))
            m_duration = std::max(value, 0.0);
        // At the end the player reports when its last picture began; on the way, where it comes from.
        if (asked == Asked::position && !m_movements.isUnderWay() && !m_isAtEnd)
            setTime(value);
    } else if (format == MPV_FORMAT_FLAG) {
        const bool value = *static_cast<const int*>(data);
        if (asked == Asked::seekable)
            m_isSeekable = value;
        if (asked == Asked::end)
            atEnd(value);
    } else if (format == MPV_FORMAT_NODE && asked == Asked::tracks) {
        hearTracks(*static_cast<const mpv_node*>(data));
    }
}

void PlayerEngine::hearTracks(const mpv_node& tracks) {
    const std::optional<VideoTrack> video = videoTrackOf(tracks);
    m_hasVideo = video.has_value();
    m_isSound = !m_hasVideo;
    if (m_isSound) {
        setSight(Sight::nothing);
        return;
    }
    m_videoSize = video->size;
    m_codec = video->codec;
}

// The facts are asked for here and not watched, so that each answer says which file it is of.
void PlayerEngine::fileLoaded() {
    m_isLoaded = true;
    m_mpv->get("duration", MPV_FORMAT_DOUBLE, tag(Asked::duration));
    m_mpv->get("seekable", MPV_FORMAT_FLAG, tag(Asked::seekable));
    m_mpv->get("track-list", MPV_FORMAT_NODE, tag(Asked::tracks));
}

void PlayerEngine::arrived() {
    m_movements.arrived();
    if (!m_isSound)
        setSight(Sight::itself);
    // At the end of a file the player pauses by itself, whenever that was in the meantime.
    if (m_rate != 0)
        m_mpv->set("pause", false);
    move();
    m_mpv->get("eof-reached", MPV_FORMAT_FLAG, tag(Asked::end));
    m_mpv->get("time-pos", MPV_FORMAT_DOUBLE, tag(Asked::position));
}

// A film without sound ends when the surface it is shown on goes before it could be turned away.
void PlayerEngine::loadAgain() {
    m_entry = 0;
    m_isBegun = m_isLoaded = false;
    m_movements.reset();
    m_movements.begin();
    m_movements.seek(m_time, true);
    m_mpv->load(m_url, tag(Asked::loading));
}

void PlayerEngine::failed() {
    m_hasFailed = true;
    m_isLoaded = false;
    m_movements.reset();
    m_movements.begin();
    setRate(0);
    setSight(Sight::nothing);
}

void PlayerEngine::atEnd(bool isIt) {
    m_isAtEnd = isIt;
    if (isIt && m_rate != 0 && !m_movements.isUnderWay())
        ended();
}

void PlayerEngine::ended() {
    if (m_isBackward) { // at the beginning, that is
        m_isAtEnd = false;
        setTime(0);
        setRate(0);
        return;
    }
    if (m_loop) {
        seek(0, true);
        setRate(m_speed);
        return;
    }
    setRate(0);
    if (m_duration > 0)
        m_time = m_duration.value();
    if (const auto onEnd = m_onEnd)
        onEnd(); // it may load the next file, or be the end of this object
}

} // namespace lumbra
