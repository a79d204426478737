// SPDX-License-Identifier: GPL-3.0-or-later
#include "SurfaceSwitch.h"

#include "MpvAnswers.h"
#include "VideoSurface.h"

#include <QTimer>

#include <mpv/client.h>

namespace lumbra {

using namespace std::chrono_literals;

namespace {

constexpr std::pair<const char*, const char*> forSoftware[] = {
    {"scale", "bilinear"},         {"dscale", "bilinear"},       {"cscale", "bilinear"},      {"dither", "no"},
    {"correct-downscaling", "no"}, {"linear-downscaling", "no"}, {"sigmoid-upscaling", "no"},
};

} // namespace

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
        m_mpv->set("vo", "null");
        turnAway();
        return;
    }
    if (m_drawing)
        m_drawing->setDraws(false);
    m_drawing = wanted;
    if (wanted)
        wanted->setDraws(true);
}

// The player takes the wish at once and leaves its output a moment later, without a word.
void SurfaceSwitch::turnAway() {
    m_mpv->get("current-vo", MPV_FORMAT_STRING, [self = QPointer(this)](const MpvAnswer& output) {
        if (!self || !self->m_isTurningAway)
            return;
        if (output.text() == "libmpv")
            QTimer::singleShot(5ms, self, &SurfaceSwitch::turnAway);
        else if (self->m_drawing) // otherwise it frees its context in dying
            self->m_drawing->setDraws(false);
    });
}

void SurfaceSwitch::contextMade(const VideoSurface* surface, bool isSoftware) {
    m_owner = surface;
    if (surface != m_drawing || !m_surfaces.contains(m_drawing)) {
        choose();
        return;
    }
    // Without a graphics processor the finer ways of scaling cost more than a picture's time.
    if (isSoftware)
        for (const auto& [option, value] : forSoftware)
            m_mpv->set(option, value);
    m_mpv->set("vo", "libmpv");
    Q_EMIT made();
}

void SurfaceSwitch::contextFreed(const VideoSurface* surface) {
    if (surface != m_owner)
        return;
    m_owner = nullptr;
    m_isTurningAway = false;
    // It may have been freed under the film, as when its window went: then that has lost its pictures and needs them
    // again.
    m_mpv->set("vo", "null");
    m_mpv->set("vid", "auto");
    if (surface == m_drawing)
        m_drawing = nullptr;
    Q_EMIT freed(surface);
    choose();
}

} // namespace lumbra
