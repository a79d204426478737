// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomDoor.h"

#include "media/Mpris.h"
#include "media/player/MpvLibrary.h"
#include "platform/Tasks.h"

namespace lumbra {

RoomDoor::RoomDoor(Library* library, const RoomOptions& options, QObject* parent)
    : QObject(parent), m_library(library), m_options(options) {
    connect(library, &Library::playingChanged, this, &RoomDoor::follow);
    follow();
}

RoomDoor::~RoomDoor() = default;

void RoomDoor::follow() {
    if (isOpen() && !m_room) {
        m_room = std::make_unique<ScreeningRoom>(m_library, m_options);
        Q_EMIT roomChanged();
    }
    if (isOpen() && !m_mpris)
        m_mpris = std::make_unique<Mpris>(*m_room);
    else if (!isOpen())
        m_mpris.reset();
    if (std::exchange(m_wasOpen, isOpen()) != isOpen())
        Q_EMIT openChanged();
}

void RoomDoor::expect(const Asset& asset) {
    if (usesEngine(asset) && !std::exchange(m_isReady, true))
        Tasks::run(Tasks::Pool::utility, [] { MpvLibrary::shared(); });
}

void RoomDoor::faded() {
    if (isOpen() || !m_room)
        return;
    // Its view goes first, with all that reads the room.
    ScreeningRoom* const room = m_room.release();
    Q_EMIT roomChanged();
    room->deleteLater();
}

} // namespace lumbra
