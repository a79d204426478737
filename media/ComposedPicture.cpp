// SPDX-License-Identifier: GPL-3.0-or-later
#include "ComposedPicture.h"

#include <QBrush>
#include <QPainter>

namespace lumbra {

namespace {

// Filled with the image as a brush, since a clip has no soft edge.
void fill(QPainter& painter, const QImage& image, const QRectF& place, const QRectF& frame, double radius) {
    QBrush brush(image);
    brush.setTransform(QTransform()
                           .translate(place.x(), place.y())
                           .scale(place.width() / image.width(), place.height() / image.height()));
    painter.setBrush(brush);
    painter.save();
    painter.setClipRect(place);
    painter.drawRoundedRect(frame, radius, radius);
    painter.restore();
}

} // namespace

QRectF fittedInto(const QSizeF& frame, const QSize& picture) {
    QRectF place(QPointF(), QSizeF(picture).scaled(frame, Qt::KeepAspectRatio));
    place.moveCenter(QRectF(QPointF(), frame).center());
    return place;
}

QImage composedPicture(const QImage& picture, const QImage& glow, const QSizeF& frame, double radius, double scale) {
    QImage composed((frame * scale).toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    composed.fill(Qt::transparent);
    QPainter painter(&composed);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.scale(scale, scale);
    const QRectF whole(QPointF(), frame);
    if (!glow.isNull()) // as the edges of a stretched brush repeat, the image is stretched first
        fill(painter, glow.scaled(composed.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation), whole, whole,
             radius);
    if (!picture.isNull())
        fill(painter, picture, fittedInto(frame, picture.size()), whole, radius);
    return composed;
}

} // namespace lumbra
