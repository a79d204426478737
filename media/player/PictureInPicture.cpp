// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureInPicture.h"

#include "PlayerEngine.h"
#include "SmallWindow.h"
#include "SurfaceSwitch.h"
#include "VideoSurface.h"

#include <QGuiApplication>

namespace lumbra {

bool PictureInPicture::isSupported() {
    return QQuickWindow::graphicsApi() == QSGRendererInterface::OpenGL && QGuiApplication::primaryScreen()
           && QGuiApplication::platformName() != u"offscreen";
}

PictureInPicture::PictureInPicture(PlayerEngine& player) : m_player(player) {
    connect(&player.surfaces(), &SurfaceSwitch::freed, this, [this](const void* surface) {
        if (!m_isActive && surface == m_surface)
            close();
    });
    // A film that is being loaded has no size yet: the window waits.
    connect(&player, &PlayerEngine::videoSizeChanged, this, [this] {
        if (m_isActive && !m_player.videoSize().isEmpty())
            m_window->setShape(m_player.videoSize());
    });
    connect(&player, &PlayerEngine::isPlayingChanged, this, [this] {
        if (m_window)
            m_window->setPlaying(m_player.isPlaying());
    });
}

PictureInPicture::~PictureInPicture() {
    close();
}

void PictureInPicture::start() {
    if (m_isActive)
        return;
    if (!m_window) {
        m_window = std::make_unique<SmallWindow>();
        m_surface = new VideoSurface(m_window->contentItem());
        m_window->setContent(m_surface);
        connect(m_window.get(), &SmallWindow::playWanted, &m_player, &PlayerEngine::toggle);
        connect(m_window.get(), &SmallWindow::endWanted, this, &PictureInPicture::stop);
    }
    m_isActive = true;
    const QSizeF shape = m_player.videoSize().isEmpty() ? QSizeF(16, 9) : QSizeF(m_player.videoSize());
    const VideoSurface* const stage = m_player.surfaces().drawing();
    if (stage && stage->window())
        m_window->placeOver(QRectF(stage->mapToGlobal(QPointF()), stage->size()).toRect(), shape);
    else
        m_window->placeOn(m_window->screen(), shape);
    m_surface->setPlayer(&m_player);
    m_window->setPlaying(m_player.isPlaying());
    m_window->show();
    Q_EMIT activeChanged();
}

void PictureInPicture::stop() {
    if (!m_isActive)
        return;
    m_isActive = false;
    const bool drew = m_player.surfaces().drawing() == m_surface;
    m_player.surfaces().remove(m_surface);
    if (!drew)
        close();
    Q_EMIT activeChanged();
}

QQuickWindow* PictureInPicture::window() const {
    return m_isActive ? m_window.get() : nullptr;
}

void PictureInPicture::close() {
    m_isActive = false;
    if (!m_window)
        return;
    delete std::exchange(m_surface, nullptr);
    m_window->setContent(nullptr);
    m_window->hide();
    // One of its own events may be under way.
    m_window.release()->deleteLater();
}

} // namespace lumbra
