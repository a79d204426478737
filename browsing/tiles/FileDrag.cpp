// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDrag.h"

#include "media/ComposedPicture.h"
#include "media/Thumbnails.h"

#include <QDrag>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>

namespace lumbra {

namespace {

// In points.
constexpr QSizeF pictureSize(120, 90);
constexpr double widestName = 160;
constexpr double nameHeight = 16;
constexpr double gap = 6;
constexpr double pad = 8;
constexpr double radius = 10;
constexpr int offset = 12; // of the pointer from what moves, which is not to hide where it may land

QImage knownPicture(const Asset& asset) {
    for (const double size : {140.0, 240.0, 420.0})
        if (const QImage picture = Thumbnails::shared().peek(asset, Thumbnails::bucket(size)); !picture.isNull())
            return picture;
    return {};
}

FileDrag::Style styleOf(const QObject& theme) {
    FileDrag::Style style;
    style.font.setFamily(theme.property("family").toString());
    style.font.setPixelSize(theme.property("sizeFact").toInt());
    style.text = theme.property("text").value<QColor>();
    style.bed = theme.property("raised").value<QColor>();
    return style;
}

} // namespace

std::unique_ptr<QMimeData> FileDrag::dataOf(const Location& url) {
    auto data = std::make_unique<QMimeData>();
    data->setUrls({url.toUrl()});
    return data;
}

QPixmap FileDrag::pictureOf(const QString& name, const QImage& thumbnail, const Style& style, double scale) {
    const QFontMetricsF metrics(style.font);
    const QString shown = metrics.elidedText(name, Qt::ElideMiddle, widestName);
    const QSizeF words(std::ceil(metrics.horizontalAdvance(shown)), nameHeight);
    const QSizeF picture =
        thumbnail.isNull() ? QSizeF() : QSizeF(thumbnail.size()).scaled(pictureSize, Qt::KeepAspectRatio);
    const double width = std::max(picture.width(), words.width()) + 2 * pad;
    const double top = pad + (picture.isEmpty() ? 0 : picture.height() + gap);

    QPixmap pixmap((QSizeF(width, top + nameHeight + pad) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.bed);
    painter.drawRoundedRect(QRectF(0, 0, width, top + nameHeight + pad), radius, radius);
    if (!picture.isEmpty())
        painter.drawImage(QRectF(QPointF((width - picture.width()) / 2, pad), picture),
                          composedPicture(thumbnail, {}, picture, radius - pad / 2, scale));
    painter.setPen(style.text);
    painter.setFont(style.font);
    painter.drawText(QRectF(pad, top, width - 2 * pad, nameHeight), Qt::AlignCenter | Qt::TextSingleLine, shown);
    return pixmap;
}

void FileDrag::start(const Asset& asset, QQuickItem* from, QObject* theme) {
    QQuickWindow* const window = from->window();
    if (!window)
        return;
    // The item would wait for a release that the drag takes.
    from->ungrabMouse();
    // Not within the item's own call: a drag has a loop of its own, in which a reload may take the item away.
    QMetaObject::invokeMethod(
        window,
        [asset, window, style = styleOf(*theme)] {
            if (QGuiApplication::mouseButtons() == Qt::NoButton)
                return;
            auto* const drag = new QDrag(window); // Qt's from its start on
            drag->setMimeData(dataOf(asset.url).release());
            drag->setPixmap(
                pictureOf(asset.url.name(), knownPicture(asset), style, window->effectiveDevicePixelRatio()));
            drag->setHotSpot(QPoint(-offset, -offset));
            // Never a move: some file managers would take the file out of its project without asking.
            drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
        },
        Qt::QueuedConnection);
}

} // namespace lumbra
