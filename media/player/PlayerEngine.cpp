// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerEngine.h"

#include "MpvAnswers.h"
#include "PictureInPicture.h"
#include "Shuttle.h"
#include "SurfaceSwitch.h"
#include "VideoSurface.h"
#include "core/PreferenceKeys.h"

#include <mpv/client.h>

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

using namespace std::chrono_literals;

constexpr auto tick = 33ms; // thirty a second

// A surface in a window that is drawn comes several times sooner; one in a hidden window never does.
constexpr auto surfaceWait = 400ms;

// Positions are whole numbers of this part of a second, which all usual frame rates divide.
constexpr double timescale = 600;

// Nearer to its end than this a file counts as ended; how far a press on J jumps where nothing runs backward. Seconds.
constexpr double endMargin = 0.05;
constexpr double jumpBack = 2;

} // namespace

PlayerEngine::PlayerEngine(Preferences& preferences, const MpvHandle::Options& options, QObject* parent)
    : PlayerEngine(preferences, std::make_shared<MpvHandle>(options), parent) {}

PlayerEngine::PlayerEngine(Preferences& preferences, std::shared_ptr<MpvHandle> mpv, QObject* parent)
    : QObject(parent), m_preferences(preferences), m_mpv(std::move(mpv)) {
    m_loop = preferences.value(PreferenceKeys::playerLoop);
    const double volume = preferences.value(PreferenceKeys::playerVolume);
    m_volume = std::isfinite(volume) ? std::clamp(volume, 0.0, 1.0) : 1;
    m_surfaces = std::make_unique<SurfaceSwitch>(m_mpv);
    m_mpv->listen([this](const mpv_event& event) { hear(event); }, [this](bool runs) { hearStart(runs); });
    m_surfaceWait.setSingleShot(true);
    m_surfaceWait.setInterval(surfaceWait);
    connect(&m_surfaceWait, &QTimer::timeout, this, &PlayerEngine::openWhenSeen);
    // A film that stands makes no new picture by itself, and one that is being loaded may have spent its first.
    connect(m_surfaces.get(), &SurfaceSwitch::made, this, [this] {
        m_surfaceWait.stop();
        if (m_isHeldBack)
            return openWhenSeen();
        if (m_url.isEmpty() || m_isPlaying)
            return;
        setSight(Sight::nothing);
        m_movements.seek(m_time, true);
        move();
    });

    m_clock.setTimerType(Qt::PreciseTimer);
    m_clock.setInterval(tick);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        // A player that does not answer is not asked again and again.
        if (m_file.isOpen && !m_movements.isUnderWay() && !m_isTimeAsked)
            askForTime();
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

// A room that shows nothing but stills never needs a player.
void PlayerEngine::start() {
    if (std::exchange(m_isSetUp, true))
        return;
    m_mpv->start();
    m_mpv->set("volume", m_volume * 100);
    m_mpv->set("mute", m_muted.value());
    m_mpv->observe("time-pos", MPV_FORMAT_DOUBLE);
    m_mpv->observe("eof-reached", MPV_FORMAT_FLAG);
}

MpvHandle::Then PlayerEngine::ofThisFile(MpvHandle::Then then) {
    return [this, number = m_file.number, then = std::move(then)](const MpvAnswer& answer) {
        if (m_file.number == number)
            then(answer);
    };
}

void PlayerEngine::open() {
    m_movements.begin();
    m_isHeldBack = m_surfaceWait.isActive();
    if (!m_isHeldBack)
        send();
}

void PlayerEngine::send() {
    m_isFirst = !std::exchange(m_hasSent, true) && m_surfaces->isDrawn();
    m_mpv->load(m_url, ofThisFile([this](const MpvAnswer& answer) {
                    const mpv_node* const loaded = answer.node();
                    loaded ? void(m_file.entry = entryOf(*loaded)) : failed();
                }));
}

void PlayerEngine::openWhenSeen() {
    if (std::exchange(m_isHeldBack, false))
        send();
}

void PlayerEngine::awaitSurface(bool awaited) {
    if (awaited && !m_surfaces->isDrawn())
        m_surfaceWait.start();
    else
        m_surfaceWait.stop();
}

void PlayerEngine::askForTime() {
    m_isTimeAsked = true;
    m_mpv->get("time-pos", MPV_FORMAT_DOUBLE, [this, number = m_file.number](const MpvAnswer& answer) {
        m_isTimeAsked = false;
        if (const std::optional<double> time = answer.number(); time && m_file.number == number)
            hearTime(*time);
    });
}

void PlayerEngine::load(const Location& url, bool autoplay) {
    if (url == m_url)
        return;
    start();
    m_isFirst = false;
    m_url = url;
    m_file = m_file.next();
    if (!autoplay)
        setRate(0);
    turn(false);
    open();

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
    m_surfaceWait.stop();
    m_isHeldBack = false;
    m_isFirst = false;
    m_url = Location();
    m_file = m_file.next();
    m_movements.reset();
    setSight(Sight::nothing);
    if (m_pip)
        m_pip->stop();
}

void PlayerEngine::play() {
    const bool isOver = m_duration > 0 ? m_time >= m_duration - endMargin : m_file.isAtEnd;
    if (isOver)
        seek(0, true);
    m_shuttle = 1;
    setRate(m_speed);
}

void PlayerEngine::seek(double to, bool exact) {
    double target = m_duration > 0 ? std::min(to, m_duration.value()) : to;
    target = std::isfinite(target) ? std::max(target, 0.0) : 0;
    target = std::round(target * timescale) / timescale;
    m_time = target;
    if (m_url.isEmpty())
        return;
    m_file.isAtEnd = false;
    m_file.isPlaced = exact && !m_isPlaying;
    m_movements.seek(target, exact);
    move();
}

void PlayerEngine::step(int count) {
    pause();
    if (!m_file.hasVideo)
        return;
    m_file.isPlaced = false;
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
    if (m_shuttle < 0 && !m_file.canPlayReverse()) {
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
    if (m_url.isEmpty() || m_file.hasFailed)
        rate = 0;
    m_rate = rate;
    turn(rate < 0);
    if (rate != 0) {
        m_file.isPlaced = false;
        m_mpv->set("speed", std::abs(rate));
        m_clock.start();
        // At its end the player does nothing; sent there again it says so once more.
        if (rate > 0 && m_file.isAtEnd)
            seek(m_time, true);
    } else {
        m_clock.stop();
        if (m_file.isOpen)
            askForTime();
    }
    m_mpv->set("pause", rate == 0);
    m_isPlaying = rate != 0;
}

void PlayerEngine::turn(bool backward) {
    if (std::exchange(m_isBackward, backward) == backward)
        return;
    // Sound keeps the player from starting backward for seconds, and is of no use then.
    m_mpv->set("aid", backward ? "no" : "auto");
    // A reader that has got to the end of the file is not woken to go back otherwise: it would begin after a second,
    // when it looks by itself, or not at all.
    m_mpv->set("demuxer-force-retry-on-eof", backward);
    m_mpv->set("play-dir", backward ? "backward" : "forward");
    if (!m_file.isOpen)
        return;
    // To turn is to seek, and the player would go to where it was before it has got to where it is sent.
    m_movements.reset();
    m_movements.seek(m_time, true);
    move();
}

void PlayerEngine::move() {
    while (const std::optional<QByteArrayList> command = m_movements.next())
        m_mpv->command(*command, ofThisFile([this](const MpvAnswer& answer) {
            if (answer.isRefused())
                arrived();
        }));
}

void PlayerEngine::setSight(Sight sight) {
    m_sight = sight;
    m_surfaces->update();
}

} // namespace lumbra
