// Decides which of a player's surfaces shows its pictures: the one that came last, so that the room's gives way to the
// small window's and takes over again when that is gone.
//
// mpv has one drawing context at a time, bound to one window, and a film whose context is freed under it loses its
// pictures for good. So the pictures are first turned away from the context, then the old surface frees it, then the
// new one makes another, and then they are turned back; sound and time go on meanwhile. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MpvHandle.h"

#include <QList>
#include <QObject>
#include <QPointer>

namespace lumbra {

class VideoSurface;

class SurfaceSwitch : public QObject {
    Q_OBJECT

public:
    explicit SurfaceSwitch(std::shared_ptr<MpvHandle> mpv) : m_mpv(std::move(mpv)) {}

    void add(VideoSurface* surface);

    // A surface that stays alive is told to stop drawing, and `freed` follows if it drew.
    void remove(VideoSurface* surface);

    // The one that draws, or is about to; null if none.
    VideoSurface* drawing() const { return m_drawing; }

    // Whether it has a context to draw with.
    bool isDrawn() const { return m_drawing && m_owner == m_drawing && !m_isTurningAway; }

    // The surfaces look at the player again.
    void update() const;

    // What happened: a surface has made its context, or has freed it, maybe by dying.
    void contextMade(const VideoSurface* surface, bool isSoftware);
    void contextFreed(const VideoSurface* surface);

Q_SIGNALS:
    // The player draws on a surface from now on, with a picture as soon as it has a new one.
    void made();

    // The surface that drew has given its context up; its address, since it may be gone.
    void freed(const void* surface);

private:
    void choose();
    void turnAway();

    const std::shared_ptr<MpvHandle> m_mpv;
    QList<VideoSurface*> m_surfaces; // in the order in which they came
    QPointer<VideoSurface> m_drawing;
    const VideoSurface* m_owner = nullptr; // of the context there is; only compared
    bool m_isTurningAway = false;
};

} // namespace lumbra
