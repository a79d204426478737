// A symbol on screen: `Symbol { name: "star.fill"; size: 16; color: Theme.amber }`. Crisp at every scale; small ones
// share one texture with their neighbours, so that thousands of them cost one draw call.
//
// A symbol says nothing to assistive technology; the control that carries it does.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Symbol : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // An unknown or empty name draws nothing.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    // The side of its square; the item's implicit size.
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString& name);

    qreal size() const { return m_size; }
    void setSize(qreal size);

    QColor color() const { return m_color; }
    void setColor(const QColor& color);

Q_SIGNALS:
    void nameChanged();
    void sizeChanged();
    void colorChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;

private:
    void redraw();

    QString m_name;
    qreal m_size = 0;
    QColor m_color = Qt::white;
    QImage m_picture; // made on the main thread, taken by the render thread while that one waits
    bool m_stale = false;
};

} // namespace lumbra
