// SPDX-License-Identifier: GPL-3.0-or-later
#include "MprisInterfaces.h"

#include "room/ScreeningRoom.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace lumbra {

namespace {
constexpr double microseconds = 1e6;
}

void MprisRoot::Raise() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows) {
        if (!window->isVisible() || window->transientParent() || window->type() != Qt::Window)
            continue;
        window->raise();
        window->requestActivate();
        return;
    }
}

void MprisPlayer::setLoopStatus(const QString& status) {
    m_mpris.room().engine()->setLoop(status != u"None");
}

void MprisPlayer::setRate(double rate) {
    if (rate == 0)
        return Pause();
    m_mpris.room().engine()->setSpeed(std::clamp(rate, minimumRate(), maximumRate()));
}

void MprisPlayer::setVolume(double volume) {
    m_mpris.room().engine()->setVolume(volume);
}

void MprisPlayer::Next() {
    m_mpris.room().go(1);
}

void MprisPlayer::Previous() {
    m_mpris.room().go(-1);
}

void MprisPlayer::Pause() {
    if (canPlay())
        m_mpris.room().engine()->pause();
}

void MprisPlayer::PlayPause() {
    if (canPlay())
        m_mpris.room().engine()->toggle();
}

void MprisPlayer::Stop() {
    if (!canPlay())
        return;
    m_mpris.room().engine()->pause();
    m_mpris.room().engine()->seek(0, true);
}

void MprisPlayer::Play() {
    if (canPlay() && !m_mpris.room().engine()->isPlaying())
        m_mpris.room().engine()->play();
}

// Beyond the end is the next file.
void MprisPlayer::Seek(qlonglong offset) {
    if (!canPlay())
        return;
    PlayerEngine* const engine = m_mpris.room().engine();
    const double target = engine->time() + double(offset) / microseconds;
    if (engine->duration() > 0 && target > engine->duration())
        return Next();
    engine->seek(target, true);
    m_mpris.announceSeek();
}

// One that comes too late is of the file before.
void MprisPlayer::SetPosition(const QDBusObjectPath& track, qlonglong position) {
    PlayerEngine* const engine = m_mpris.room().engine();
    const double target = double(position) / microseconds;
    const bool isWithin = target >= 0 && (engine->duration() <= 0 || target <= engine->duration());
    if (!canPlay() || track != m_mpris.track() || !isWithin)
        return;
    engine->seek(target, true);
    m_mpris.announceSeek();
}

} // namespace lumbra
