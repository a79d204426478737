// A picture on the stage: whole, as large as the item allows, in its middle, and pixel for pixel where it was decoded
// to just that size. A small picture may stand for it until it is there. One that is not to be enlarged has a pixel a
// point where there is room for that, as on a page of the web.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class StagePicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(QImage poster READ poster WRITE setPoster NOTIFY posterChanged)
    Q_PROPERTY(bool enlarges READ enlarges WRITE setEnlarges NOTIFY enlargesChanged)

public:
    explicit StagePicture(QQuickItem* parent = nullptr);

    QImage image() const { return m_image; }
    void setImage(const QImage& image);
    QImage poster() const { return m_poster; }
    void setPoster(const QImage& poster);
    bool enlarges() const { return m_enlarges; }
    void setEnlarges(bool enlarges);

    // Where a picture of this size stands in a frame, in points; `scale` is pixels a point. What is as large as its
    // place but for a pixel's fraction keeps its own size, and begins on a whole pixel.
    static QRectF place(const QSizeF& frame, const QSize& picture, double scale, bool enlarges = true);

Q_SIGNALS:
    void imageChanged();
    void posterChanged();
    void enlargesChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    const QImage& shown() const { return m_image.isNull() ? m_poster : m_image; }

    QImage m_image;
    QImage m_poster;
    bool m_enlarges = true;
    qint64 m_drawn = 0; // the key of what the scene graph has
};

} // namespace lumbra
