// Shows an image whole and in its proportions, in the middle of the item, inside rounded corners.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class FramePicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)

public:
    explicit FramePicture(QQuickItem* parent = nullptr);

    QImage image() const { return m_image; }
    void setImage(const QImage& image);

    // Points, of the item's own corners.
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

Q_SIGNALS:
    void imageChanged();
    void cornerRadiusChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    QImage m_image;
    double m_cornerRadius = 0;
};

} // namespace lumbra
