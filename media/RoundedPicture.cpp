// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoundedPicture.h"

#include <QSGMaterialShader>

#include <compare>
#include <cstring>

namespace lumbra {

namespace {

// As the shaders' uniform block lays them out.
constexpr int matrixOffset = 0;
constexpr int opacityOffset = 64;
constexpr int radiusOffset = 68;
constexpr int frameOffset = 72;

class RoundedShader : public QSGMaterialShader {
public:
    RoundedShader() {
        setShaderFileName(VertexStage, QStringLiteral(":/media/shaders/rounded.vert.qsb"));
        setShaderFileName(FragmentStage, QStringLiteral(":/media/shaders/rounded.frag.qsb"));
    }

    bool updateUniformData(RenderState& state, QSGMaterial* newMaterial, QSGMaterial* oldMaterial) override {
        char* const block = state.uniformData()->data();
        const auto put = [block](int offset, const auto& value) { std::memcpy(block + offset, &value, sizeof value); };
        if (state.isMatrixDirty())
            std::memcpy(block + matrixOffset, state.combinedMatrix().constData(), 64);
        if (state.isOpacityDirty())
            put(opacityOffset, state.opacity());
        if (newMaterial != oldMaterial) {
            const auto* const material = static_cast<const RoundedMaterial*>(newMaterial);
            put(radiusOffset, float(material->radius));
            put(frameOffset, float(material->frame.width()));
            put(frameOffset + int(sizeof(float)), float(material->frame.height()));
        }
        return true;
    }

    void updateSampledImage(RenderState& state, int, QSGTexture** texture, QSGMaterial* newMaterial,
                            QSGMaterial*) override {
        auto* const material = static_cast<RoundedMaterial*>(newMaterial);
        material->texture->commitTextureOperations(state.rhi(), state.resourceUpdateBatch());
        *texture = material->texture.get();
    }
};

int sign(std::partial_ordering order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace

QSGMaterialType* RoundedMaterial::type() const {
    static QSGMaterialType one;
    return &one;
}

QSGMaterialShader* RoundedMaterial::createShader(QSGRendererInterface::RenderMode) const {
    return new RoundedShader;
}

int RoundedMaterial::compare(const QSGMaterial* other) const {
    const auto* const that = static_cast<const RoundedMaterial*>(other);
    if (const auto order = texture->comparisonKey() <=> that->texture->comparisonKey(); order != 0)
        return sign(order);
    if (const auto order = radius <=> that->radius; order != 0)
        return sign(order);
    if (const auto order = frame.width() <=> that->frame.width(); order != 0)
        return sign(order);
    return sign(frame.height() <=> that->frame.height());
}

RoundedPicture::RoundedPicture() : m_geometry(QSGGeometry::defaultAttributes_TexturedPoint2D(), 0) {
    m_geometry.setDrawingMode(QSGGeometry::DrawTriangles);
    setGeometry(&m_geometry);
    setMaterial(&m_material);
}

void RoundedPicture::setTexture(std::shared_ptr<QSGTexture> texture) {
    texture->setFiltering(QSGTexture::Linear);
    texture->setHorizontalWrapMode(QSGTexture::ClampToEdge);
    texture->setVerticalWrapMode(QSGTexture::ClampToEdge);
    m_material.texture = std::move(texture);
    markDirty(DirtyMaterial);
}

void RoundedPicture::setPlace(const QRectF& picture, const QSizeF& frame, double radius) {
    setParts({picture}, picture, frame, radius);
}

void RoundedPicture::setPlaceBehind(const QRectF& cover, const QSizeF& frame, double radius) {
    const QRectF whole(QPointF(), frame);
    constexpr double overlap = 1; // so that nothing shows through between the two
    const QRectF hidden = cover.adjusted(cover.left() > 0 ? overlap : 0, cover.top() > 0 ? overlap : 0,
                                         cover.left() > 0 ? -overlap : 0, cover.top() > 0 ? -overlap : 0);
    QList<QRectF> parts;
    if (hidden.top() > 0)
        parts = {QRectF(whole.topLeft(), QPointF(whole.right(), hidden.top())),
                 QRectF(QPointF(whole.left(), hidden.bottom()), whole.bottomRight())};
    else if (hidden.left() > 0)
        parts = {QRectF(whole.topLeft(), QPointF(hidden.left(), whole.bottom())),
                 QRectF(QPointF(hidden.right(), whole.top()), whole.bottomRight())};
    setParts(parts, whole, frame, radius);
}

void RoundedPicture::setParts(const QList<QRectF>& parts, const QRectF& picture, const QSizeF& frame, double radius) {
    constexpr int corners = 6; // of two triangles
    m_geometry.allocate(int(parts.size()) * corners);
    QSGGeometry::TexturedPoint2D* point = m_geometry.vertexDataAsTexturedPoint2D();
    for (const QRectF& part : parts)
        for (const QPointF& corner : {part.topLeft(), part.bottomLeft(), part.topRight(), part.topRight(),
                                      part.bottomLeft(), part.bottomRight()})
            (point++)->set(float(corner.x()), float(corner.y()), float((corner.x() - picture.left()) / picture.width()),
                           float((corner.y() - picture.top()) / picture.height()));
    m_material.frame = frame;
    m_material.radius = radius;
    markDirty(DirtyGeometry | DirtyMaterial);
}

} // namespace lumbra
