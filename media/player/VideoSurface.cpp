// SPDX-License-Identifier: GPL-3.0-or-later
#include "VideoSurface.h"

#include "SurfaceSwitch.h"
#include "VideoRenderer.h"

#include <QTimer>

namespace lumbra {

VideoSurface::VideoSurface(QQuickItem* parent) : QQuickFramebufferObject(parent) {
    setTextureFollowsItemSize(true);
}

VideoSurface::~VideoSurface() {
    setPlayer(nullptr);
}

void VideoSurface::setPlayer(PlayerEngine* player) {
    if (m_player == player)
        return;
    if (m_player) {
        disconnect(m_player, nullptr, this, nullptr);
        m_player->surfaces().remove(this);
    }
    m_player = player;
    if (player) {
        player->addSurface(this);
        connect(player, &QObject::destroyed, this, &QQuickItem::update);
        connect(player, &PlayerEngine::videoSizeChanged, this, &QQuickItem::update); // the glow waits for it
    }
    Q_EMIT playerChanged();
}

void VideoSurface::setHolds(bool holds) {
    if (std::exchange(m_holds, holds) == holds)
        return;
    Q_EMIT holdsChanged();
    update();
}

QQuickFramebufferObject::Renderer* VideoSurface::createRenderer() const {
    return new VideoRenderer;
}

void VideoSurface::setDraws(bool draws) {
    m_draws = draws;
    update();
}

void VideoSurface::lookAgain(int milliseconds) {
    QTimer::singleShot(milliseconds, this, [this, glows = m_counts->glows.load()] {
        if (m_counts->glows == glows)
            update();
    });
}

void VideoSurface::takeGlow(const QImage& image, quint64 file) {
    if (m_player)
        m_player->takeGlow(image, file);
}

} // namespace lumbra
