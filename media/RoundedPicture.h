// Draws a picture into a frame with rounded corners, antialiased on the graphics processor.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRectF>
#include <QSGGeometryNode>
#include <QSGMaterial>
#include <QSGTexture>

#include <memory>

namespace lumbra {

class RoundedMaterial : public QSGMaterial {
public:
    // A batch would move the points into the window's coordinates, and the corners are told in the item's. Few
    // pictures share a texture, so there is little to batch.
    RoundedMaterial() { setFlag(Blending | NoBatching); }

    QSGMaterialType* type() const override;
    QSGMaterialShader* createShader(QSGRendererInterface::RenderMode mode) const override;
    int compare(const QSGMaterial* other) const override;

    std::shared_ptr<QSGTexture> texture;
    QSizeF frame; // the item's, which the corners belong to
    double radius = 0;
};

// One picture. Lives in the scene graph: touch it only while the item's node is updated.
class RoundedPicture : public QSGGeometryNode {
public:
    RoundedPicture();

    const std::shared_ptr<QSGTexture>& texture() const { return m_material.texture; }
    void setTexture(std::shared_ptr<QSGTexture> texture);

    // Where the picture stands in its frame, both in the item's coordinates.
    void setPlace(const QRectF& picture, const QSizeF& frame, double radius);

    // The same for one that fills its frame behind something opaque, which stands in the middle and reaches from edge
    // to edge: only what is seen beside it is drawn. To draw a picture twice takes twice as long where there is no
    // graphics processor.
    void setPlaceBehind(const QRectF& cover, const QSizeF& frame, double radius);

private:
    void setParts(const QList<QRectF>& parts, const QRectF& picture, const QSizeF& frame, double radius);

    QSGGeometry m_geometry;
    RoundedMaterial m_material;
};

} // namespace lumbra
