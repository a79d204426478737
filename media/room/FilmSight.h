// Tells the stage, before each frame is drawn, whether the player still shows the picture of the file before: between
// two films it does, until the new one has its first picture.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/player/PlayerEngine.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class FilmSight : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::PlayerEngine* player READ player WRITE setPlayer NOTIFY playerChanged)
    Q_PROPERTY(bool isOfFileBefore READ isOfFileBefore NOTIFY changed)
    Q_PROPERTY(bool isItself READ isItself NOTIFY changed)

public:
    explicit FilmSight(QQuickItem* parent = nullptr) : QQuickItem(parent) {}

    PlayerEngine* player() const { return m_player; }
    void setPlayer(PlayerEngine* player);

    bool isOfFileBefore() const { return m_hasPicture && !m_isItself; }
    bool isItself() const { return m_isItself; }

Q_SIGNALS:
    void playerChanged();
    void changed();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void look();

    QPointer<PlayerEngine> m_player;
    QMetaObject::Connection m_frames;
    bool m_hasPicture = false;
    bool m_isItself = false;
};

} // namespace lumbra
