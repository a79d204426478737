// How PlayerEngine takes what the player reports.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MpvAnswers.h"
#include "PlayerEngine.h"
#include "SurfaceSwitch.h"
#include "VideoSurface.h"

#include <mpv/client.h>

#include <algorithm>
#include <cmath>

namespace lumbra {

void PlayerEngine::hearStart(bool runs) {
    m_isAvailable = runs;
    if (runs)
        m_surfaces->update();
    else
        failed();
}

void PlayerEngine::hear(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        if (!m_file.isOpen || !property.data)
            break;
        if (property.format == MPV_FORMAT_FLAG)
            atEnd(*static_cast<const int*>(property.data));
        else if (!m_isPlaying) // while it runs the clock asks, and no more often than is needed
            hearTime(*static_cast<const double*>(property.data));
        break;
    }
    case MPV_EVENT_START_FILE:
        m_file.isBegun = m_file.isEntry(static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id);
        break;
    case MPV_EVENT_FILE_LOADED:
        if (m_file.isBegun)
            fileLoaded();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (m_file.isOpen)
            arrived();
        break;
    case MPV_EVENT_END_FILE: {
        const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
        if (!m_file.isEntry(end.playlist_entry_id))
            break;
        // A film without sound ends when the surface it is shown on goes before it could be turned away.
        if (m_file.isOpen && end.error == MPV_ERROR_VO_INIT_FAILED)
            openAgain();
        else
            failed();
        break;
    }
    default:
        break;
    }
}

// The player reports when its picture began; on the way, where it comes from.
void PlayerEngine::hearTime(double time) {
    if (m_movements.isUnderWay() || m_file.isAtEnd || m_file.isPlaced)
        return;
    // Its last picture may begin a little after the end that the file tells of.
    const double last = m_duration > 0 ? m_duration.value() : time;
    m_time = std::isfinite(time) ? std::min(time, last) : 0;
}

void PlayerEngine::hearTracks(const mpv_node& tracks) {
    const std::optional<VideoTrack> video = videoTrackOf(tracks);
    if (!video)
        return setSight(Sight::nothing);
    m_file.hasVideo = true;
    m_videoSize = video->size;
    m_codec = video->codec;
    if (!m_movements.isUnderWay()) // it was there before this answer
        setSight(Sight::itself);
}

// The facts are asked for and not watched, so that each answer says which file it is of.
void PlayerEngine::fileLoaded() {
    m_file.isOpen = true;
    m_mpv->get("duration", MPV_FORMAT_DOUBLE, ofThisFile([this](const MpvAnswer& answer) {
                   const double duration = answer.number().value_or(0);
                   m_duration = std::isfinite(duration) ? std::max(duration, 0.0) : 0;
               }));
    m_mpv->get("seekable", MPV_FORMAT_FLAG,
               ofThisFile([this](const MpvAnswer& answer) { m_file.isSeekable = answer.flag().value_or(false); }));
    m_mpv->get("track-list", MPV_FORMAT_NODE, ofThisFile([this](const MpvAnswer& answer) {
                   if (const mpv_node* const tracks = answer.node())
                       hearTracks(*tracks);
               }));
}

void PlayerEngine::arrived() {
    m_movements.arrived();
    if (m_file.hasVideo)
        setSight(Sight::itself);
    // At the end of a file the player pauses by itself, whenever that was in the meantime.
    if (m_rate != 0)
        m_mpv->set("pause", false);
    move();
    m_mpv->get("eof-reached", MPV_FORMAT_FLAG, ofThisFile([this](const MpvAnswer& answer) {
                   if (const std::optional<bool> isIt = answer.flag())
                       atEnd(*isIt);
               }));
    askForTime();
}

void PlayerEngine::openAgain() {
    m_file.entry = 0;
    m_file.isBegun = m_file.isOpen = false;
    open();
    m_movements.seek(m_time, true);
}

void PlayerEngine::failed() {
    m_file.hasFailed = true;
    m_file.isOpen = false;
    m_movements.begin();
    setRate(0);
    setSight(Sight::nothing);
}

void PlayerEngine::atEnd(bool isIt) {
    m_file.isAtEnd = isIt;
    if (isIt && m_rate != 0 && !m_movements.isUnderWay())
        ended();
}

void PlayerEngine::ended() {
    if (m_isBackward) { // at the beginning, that is
        m_file.isAtEnd = false;
        m_time = 0;
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
