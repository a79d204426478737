// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmSight.h"

#include <QQuickWindow>

namespace lumbra {

void FilmSight::setPlayer(PlayerEngine* player) {
    if (m_player == player)
        return;
    m_player = player;
    Q_EMIT playerChanged();
    look();
}

void FilmSight::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change != ItemSceneChange)
        return;
    disconnect(m_frames);
    // The player asks its surface for a frame whenever this changes, and what is set here is drawn with that frame.
    if (value.window)
        m_frames = connect(value.window, &QQuickWindow::afterAnimating, this, &FilmSight::look);
}

void FilmSight::look() {
    const bool hasPicture = m_player && m_player->hasPicture();
    const bool isItself = m_player && m_player->pictureOf() != 0;
    if (hasPicture == m_hasPicture && isItself == m_isItself)
        return;
    m_hasPicture = hasPicture;
    m_isItself = isItself;
    Q_EMIT changed();
}

} // namespace lumbra
