// Opens the screening room when the library has something to play, and closes it when its view has faded.
//
// The room and its player live no longer than they are seen. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ScreeningRoom.h"

#include <QObject>
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

public:
    // The library must outlive it, as must what the options point to.
    explicit RoomDoor(Library* library, const RoomOptions& options = {}, QObject* parent = nullptr);
    ~RoomDoor() override;

    // From the moment something plays until the view that showed it has faded; otherwise null.
    ScreeningRoom* room() const { return m_room.get(); }

    // Something plays.
    bool isOpen() const { return m_library->playing().has_value(); }

    // What may be opened next, as far as one can tell: gets ready what takes long the first time.
    void expect(const Asset& asset);

    // The view can no longer be seen; does nothing if the room has been opened again meanwhile.
    Q_INVOKABLE void faded();

Q_SIGNALS:
    void roomChanged();
    void openChanged();

private:
    void follow();

    Library* const m_library;
    const RoomOptions m_options;
    std::unique_ptr<ScreeningRoom> m_room;
    std::unique_ptr<Mpris> m_mpris; // dies before the room
    bool m_wasOpen = false;
    bool m_isReady = false; // for films and sounds
};

} // namespace lumbra
