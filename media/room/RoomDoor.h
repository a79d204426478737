// Opens the screening room when the library has something to play, and closes it when its view has faded.
//
// The room and its player live no longer than they are seen. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ScreeningRoom.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace lumbra {

class Mpris;

class RoomDoor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(lumbra::ScreeningRoom* room READ room NOTIFY roomChanged)
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(lumbra::ScreeningRoom* rehearsal READ rehearsal NOTIFY rehearsalChanged)

public:
    // The library must outlive it, as must what the options point to.
    explicit RoomDoor(Library* library, const RoomOptions& options = {}, QObject* parent = nullptr);
    ~RoomDoor() override;

    // From the moment something plays until the view that showed it has faded; otherwise null.
    ScreeningRoom* room() const { return m_room.get(); }

    // Something plays.
    bool isOpen() const { return m_library->playing().has_value(); }

    // What may be opened next, as far as one can tell: gets ready what takes long to make. An mpv that plays nothing
    // costs no time.
    void expect(const Asset& asset);

    // The player of the next room; null while no film or sound is expected.
    const std::shared_ptr<MpvHandle>& readyPlayer() const { return m_options.mpv; }

    // A room that never opens, to be drawn once unseen: what its first drawing takes, the first film need not wait for.
    // Once in the life of the door, soon after a film or a sound was expected; otherwise null.
    ScreeningRoom* rehearsal() const { return m_rehearsal.get(); }
    Q_INVOKABLE void rehearsed();

    // The view can no longer be seen; does nothing if the room has been opened again meanwhile.
    Q_INVOKABLE void faded();

Q_SIGNALS:
    void roomChanged();
    void openChanged();
    void rehearsalChanged();

private:
    void follow();
    void getReady();
    void rehearse();

    Library* const m_library;
    RoomOptions m_options; // with the player of the next room, once there is reason to expect one
    std::unique_ptr<ScreeningRoom> m_room;
    std::unique_ptr<Mpris> m_mpris; // dies before the room
    std::unique_ptr<ScreeningRoom> m_rehearsal;
    QTimer m_rehearsalDue;
    bool m_hasOpened = false; // or has been rehearsed
    bool m_wasOpen = false;
};

} // namespace lumbra
