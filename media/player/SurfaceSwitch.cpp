// SPDX-License-Identifier: GPL-3.0-or-later
#include "SurfaceSwitch.h"

#include "VideoSurface.h"

namespace lumbra {

void SurfaceSwitch::add(VideoSurface* surface) {
    m_surfaces.append(surface);
    choose();
}

void SurfaceSwitch::remove(VideoSurface* surface) {
    m_surfaces.removeOne(surface);
    choose();
}

void SurfaceSwitch::update() const {
    for (VideoSurface* surface : m_surfaces)
        surface->update();
}

void SurfaceSwitch::choose() {
    VideoSurface* const wanted = m_surfaces.isEmpty() ? nullptr : m_surfaces.last();
    if (wanted == m_drawing || m_isTurningAway)
        return;
    if (m_owner) {
        m_isTurningAway = true;
        m_mpv->set("vo", "null", m_tag);
        return;
    }
    if (m_drawing && m_surfaces.contains(m_drawing))
        m_drawing->setDraws(false);
    m_drawing = wanted;
    if (wanted)
        wanted->setDraws(true);
}

void SurfaceSwitch::pictureIsAway() {
    if (m_isTurningAway && m_drawing)
        m_drawing->setDraws(false);
}

void SurfaceSwitch::contextMade(const VideoSurface* surface) {
    m_owner = surface;
    if (surface == m_drawing && m_surfaces.contains(m_drawing))
        m_mpv->set("vo", "libmpv");
    else
        choose();
}

void SurfaceSwitch::contextFreed(const VideoSurface* surface) {
    if (surface != m_owner)
        return;
    m_owner = nullptr;
    // Without warning, as when its window lost its graphics: the film has lost its pictures, and needs them again.
    if (!std::exchange(m_isTurningAway, false)) {
        m_mpv->set("vo", "null");
        m_mpv->set("vid", "auto");
    }
    if (surface == m_drawing)
        m_drawing = nullptr;
    Q_EMIT freed(surface);
    choose();
}

} // namespace lumbra
