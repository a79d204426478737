// SPDX-License-Identifier: GPL-3.0-or-later
#include "MpvAnswers.h"

#include "Timecode.h"

#include <mpv/client.h>

#include <cmath>

namespace lumbra {

namespace {

// A field of a map, or null.
const mpv_node* field(const mpv_node& map, const char* name) {
    if (map.format != MPV_FORMAT_NODE_MAP)
        return nullptr;
    for (int i = 0; i < map.u.list->num; ++i)
        if (qstrcmp(map.u.list->keys[i], name) == 0)
            return &map.u.list->values[i];
    return nullptr;
}

double number(const mpv_node& map, const char* name, double otherwise) {
    const mpv_node* const found = field(map, name);
    if (found && found->format == MPV_FORMAT_INT64)
        return double(found->u.int64);
    return found && found->format == MPV_FORMAT_DOUBLE && std::isfinite(found->u.double_) ? found->u.double_
                                                                                          : otherwise;
}

bool flag(const mpv_node& map, const char* name) {
    const mpv_node* const found = field(map, name);
    return found && found->format == MPV_FORMAT_FLAG && found->u.flag;
}

QByteArray text(const mpv_node& map, const char* name) {
    const mpv_node* const found = field(map, name);
    return found && found->format == MPV_FORMAT_STRING ? QByteArray(found->u.string) : QByteArray();
}

QSize shownSize(const mpv_node& track) {
    const double width = number(track, "demux-w", 0) * number(track, "demux-par", 1);
    const double height = number(track, "demux-h", 0);
    if (!(width >= 1 && height >= 1 && width < 1e6 && height < 1e6))
        return {};
    const QSize size(qRound(width), qRound(height));
    return int(number(track, "demux-rotation", 0)) % 180 == 0 ? size : size.transposed();
}

} // namespace

MpvAnswer::MpvAnswer(const mpv_event& event) : m_isRefused(event.error < 0) {
    if (m_isRefused)
        return;
    if (event.event_id == MPV_EVENT_COMMAND_REPLY) {
        m_format = MPV_FORMAT_NODE;
        m_data = &static_cast<const mpv_event_command*>(event.data)->result;
    } else if (event.event_id == MPV_EVENT_GET_PROPERTY_REPLY) {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        m_format = property.format;
        m_data = property.data;
    }
}

std::optional<double> MpvAnswer::number() const {
    return m_format == MPV_FORMAT_DOUBLE ? std::optional(*static_cast<const double*>(m_data)) : std::nullopt;
}

std::optional<bool> MpvAnswer::flag() const {
    return m_format == MPV_FORMAT_FLAG ? std::optional(*static_cast<const int*>(m_data) != 0) : std::nullopt;
}

QByteArray MpvAnswer::text() const {
    return m_format == MPV_FORMAT_STRING ? QByteArray(*static_cast<const char* const*>(m_data)) : QByteArray();
}

const mpv_node* MpvAnswer::node() const {
    return m_format == MPV_FORMAT_NODE ? static_cast<const mpv_node*>(m_data) : nullptr;
}

std::optional<VideoTrack> videoTrackOf(const mpv_node& tracks) {
    if (tracks.format != MPV_FORMAT_NODE_ARRAY)
        return {};
    for (int i = 0; i < tracks.u.list->num; ++i) {
        const mpv_node& track = tracks.u.list->values[i];
        if (text(track, "type") == "video" && !flag(track, "albumart"))
            return VideoTrack{shownSize(track), codecName(codecCode(text(track, "codec")))};
    }
    return {};
}

qint64 entryOf(const mpv_node& loaded) {
    return qint64(number(loaded, "playlist_entry_id", 0));
}

} // namespace lumbra
