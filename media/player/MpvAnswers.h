// What mpv's answers say. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>

struct mpv_event;
struct mpv_node;

namespace lumbra {

// The answer to a request, as long as its event lives: a value of one of these types, or nothing.
class MpvAnswer {
public:
    explicit MpvAnswer(const mpv_event& event);

    bool isRefused() const { return m_isRefused; }

    std::optional<double> number() const;
    std::optional<bool> flag() const;
    QByteArray text() const;
    const mpv_node* node() const; // null if it is none

private:
    bool m_isRefused;
    int m_format = 0;
    const void* m_data = nullptr;
};

struct VideoTrack {
    QSize size;    // pixels as they are to be shown: stretched by their shape, then turned; empty if not known
    QString codec; // its name
};

// The first track with moving pictures, of the list of a file's tracks. A song's cover is none.
std::optional<VideoTrack> videoTrackOf(const mpv_node& tracks);

// The player's own number of a file, of what it answers when it is told to load it; 0 if it does not say.
qint64 entryOf(const mpv_node& loaded);

} // namespace lumbra
