// The shadow of what floats: menus, sheets, the palette, the toast. It fills its item's place behind the surface and
// falls outside of it: `Shadow { anchors.fill: parent; radius: Theme.radiusSheet; z: -1 }`.
//
// Blurred once for each radius and scale, then stretched over nine patches, so that it costs nothing while a surface
// moves or grows.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Shadow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed) // of the surface's corners
    Q_PROPERTY(qreal blur MEMBER m_blur NOTIFY changed)     // how far it fades out, on each side of the edge
    Q_PROPERTY(qreal drop MEMBER m_drop NOTIFY changed)     // how far below the surface it lies
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)

public:
    explicit Shadow(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;

private:
    qreal m_radius = 0;
    qreal m_blur = 0;
    qreal m_drop = 0;
    QColor m_color = Qt::black;
    bool m_stale = true;
};

} // namespace lumbra
