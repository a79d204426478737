// A ring of which a part, from the top clockwise, has another colour. Painted once into a small picture, so that to
// turn it takes nothing that other symbols do not.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Ring : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal part READ part WRITE setPart NOTIFY partChanged) // 0 to 1; what is beyond counts as the nearest
    Q_PROPERTY(qreal stroke READ stroke WRITE setStroke NOTIFY strokeChanged) // points
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)    // of the part
    Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY trackChanged)    // of the whole ring under it

public:
    explicit Ring(QQuickItem* parent = nullptr);

    qreal part() const { return m_part; }
    void setPart(qreal part);

    qreal stroke() const { return m_stroke; }
    void setStroke(qreal stroke);

    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    QColor track() const { return m_track; }
    void setTrack(const QColor& track);

Q_SIGNALS:
    void partChanged();
    void strokeChanged();
    void colorChanged();
    void trackChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;

private:
    void repaint();
    QImage painted(double scale) const;

    qreal m_part = 0;
    qreal m_stroke = 1;
    QColor m_color = Qt::white;
    QColor m_track = Qt::transparent;
    bool m_stale = true; // the picture in the scene graph
};

} // namespace lumbra
