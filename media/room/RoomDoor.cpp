// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomDoor.h"

#include "media/Mpris.h"
#include "media/quicklook/WebLibrary.h"

namespace lumbra {

namespace {

using namespace std::chrono_literals;

// Until what was clicked is seen to be selected.
constexpr auto rehearsalDelay = 60ms;

} // namespace

RoomDoor::RoomDoor(Library* library, const RoomOptions& options, QObject* parent)
    : QObject(parent), m_library(library), m_options(options) {
    m_rehearsalDue.setSingleShot(true);
    m_rehearsalDue.setInterval(rehearsalDelay);
    connect(&m_rehearsalDue, &QTimer::timeout, this, &RoomDoor::rehearse);
    connect(library, &Library::playingChanged, this, &RoomDoor::follow);
    follow();
}

RoomDoor::~RoomDoor() = default;

void RoomDoor::follow() {
    if (isOpen()) {
        m_hasOpened = true;
        m_rehearsalDue.stop();
        rehearsed();
    }
    if (isOpen() && !m_room) {
        m_room = std::make_unique<ScreeningRoom>(m_library, m_options);
        m_options.mpv = nullptr;
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
    if (m_room)
        return;
    if (usesWebView(asset))
        WebLibrary::loadAhead();
    if (!usesEngine(asset))
        return;
    getReady();
    if (!std::exchange(m_hasOpened, true))
        m_rehearsalDue.start();
}

void RoomDoor::rehearse() {
    RoomOptions options = m_options;
    options.mpv = nullptr; // which is for the room that opens
    m_rehearsal = std::make_unique<ScreeningRoom>(m_library, options);
    Asset film;
    film.kind = AssetKind::video;
    m_rehearsal->rehearse(film);
    Q_EMIT rehearsalChanged();
}

void RoomDoor::rehearsed() {
    if (!m_rehearsal)
        return;
    // As with the room, its view goes first. What the library plays is not for this one.
    ScreeningRoom* const rehearsal = m_rehearsal.release();
    m_library->disconnect(rehearsal);
    Q_EMIT rehearsalChanged();
    rehearsal->deleteLater();
}

void RoomDoor::getReady() {
    if (m_options.mpv)
        return;
    m_options.mpv = std::make_shared<MpvHandle>(m_options.player);
    m_options.mpv->start();
}

void RoomDoor::faded() {
    if (isOpen() || !m_room)
        return;
    // Its view goes first, with all that reads the room.
    ScreeningRoom* const room = m_room.release();
    Q_EMIT roomChanged();
    // What was opened once may be opened again, and is selected still.
    if (room->engine()->mpv()->isStarted())
        getReady();
    room->deleteLater();
}

} // namespace lumbra
