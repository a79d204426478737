// The screening room on the user's message bus, by the interface that media keys, headsets and lock screens know
// (MPRIS 2): play, pause, next, previous, seek, and what is playing. It is there as long as the object, which is to say
// as long as the room is open.
//
// Main thread. Where there is no bus, nothing happens.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Thumbnails.h"
#include "platform/Location.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QVariantMap>

#include <optional>

namespace lumbra {

class MprisPlayer;
class ScreeningRoom;

class Mpris : public QObject {
    Q_OBJECT

public:
    static constexpr QLatin1String path{"/org/mpris/MediaPlayer2"};
    static constexpr QLatin1String service{"org.mpris.MediaPlayer2.lumbra"};
    static constexpr QLatin1String playerInterface{"org.mpris.MediaPlayer2.Player"};

    // The room must outlive it.
    explicit Mpris(ScreeningRoom& room, QObject* parent = nullptr);
    ~Mpris() override;

    ScreeningRoom& room() const { return m_room; }

    // What the player's interface tells, by the names of its properties.
    QVariantMap player() const;

    // The object path that stands for the file on show.
    QDBusObjectPath track() const;

    // Of the file, microseconds.
    qint64 position() const;

    // The player was sent elsewhere than it would have come to by itself.
    void announceSeek();

private:
    void follow();
    void publishLater();
    void publish();
    void fileChanged();
    void makeArt();

    ScreeningRoom& m_room;
    MprisPlayer* m_player = nullptr;
    std::optional<QDBusConnection> m_bus;
    QString m_name; // on the bus
    QVariantMap m_told;
    bool m_isToPublish = false;
    double m_time = 0;
    Location m_file;
    quint64 m_count = 0; // of files, for their object paths
    QString m_art;       // an address; empty while there is none
    Thumbnails::Request m_artRequest;
};

} // namespace lumbra
