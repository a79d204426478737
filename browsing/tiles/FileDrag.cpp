// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDrag.h"

#include "media/ComposedPicture.h"
#include "media/Thumbnails.h"

#include <QDrag>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace lumbra {

namespace {

// In points.
constexpr QSizeF pictureSize(120, 90);
constexpr double widestName = 160;
constexpr double nameHeight = 24;
constexpr double gap = 6;
constexpr double pad = 10;
constexpr double radius = 10;
constexpr double offset = 12; // of the pointer from the corner of what moves

QImage knownPicture(const Asset& asset) {
    for (const double size : {140.0, 240.0, 420.0})
        if (const QImage picture = Thumbnails::shared().peek(asset, Thumbnails::bucket(size)); !picture.isNull())
            return picture;
    return {};
}

// As the design language has them, which only views know.
FileDrag::Style styleOf(const QQuickItem& item) {
    FileDrag::Style style;
    QQmlEngine* const engine = qmlEngine(&item);
    const QObject* const theme =
        engine ? engine->singletonInstance<QObject*>(qmlTypeId("Lumbra.Look", 1, 0, "Theme")) : nullptr;
    if (!theme)
        return style;
    style.font.setFamily(theme->property("family").toString());
    style.font.setPixelSize(theme->property("sizeFact").toInt());
    style.text = theme->property("text").value<QColor>();
    style.bed = theme->property("raised").value<QColor>();
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
    const double nameWidth = std::ceil(metrics.horizontalAdvance(shown)) + 2 * pad;
    const QSizeF picture =
        thumbnail.isNull() ? QSizeF() : QSizeF(thumbnail.size()).scaled(pictureSize, Qt::KeepAspectRatio);
    const double top = picture.isEmpty() ? 0 : picture.height() + gap;
    const QSizeF whole(std::max(picture.width(), nameWidth), top + nameHeight);

    QPixmap pixmap((whole * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!picture.isEmpty())
        painter.drawImage(QRectF({0, 0}, picture), composedPicture(thumbnail, {}, picture, radius, scale));
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.bed);
    painter.drawRoundedRect(QRectF(0, top, nameWidth, nameHeight), nameHeight / 2, nameHeight / 2);
    painter.setPen(style.text);
    painter.setFont(style.font);
    painter.drawText(QRectF(pad, top, nameWidth - 2 * pad, nameHeight), Qt::AlignVCenter | Qt::TextSingleLine, shown);
    return pixmap;
}

void FileDrag::start(const Asset& asset, QQuickItem* from) {
    QQuickWindow* const window = from->window();
    if (!window)
        return;
    // The item would wait for a release that the drag takes.
    from->ungrabMouse();
    // Not within the item's own call: a drag has a loop of its own, in which a reload may take the item away.
    QMetaObject::invokeMethod(
        window,
        [asset, window, style = styleOf(*from)] {
            if (QGuiApplication::mouseButtons() == Qt::NoButton)
                return;
            auto* const drag = new QDrag(window); // Qt's from its start on
            drag->setMimeData(dataOf(asset.url).release());
            drag->setPixmap(
                pictureOf(asset.url.name(), knownPicture(asset), style, window->effectiveDevicePixelRatio()));
            drag->setHotSpot(QPoint(int(offset), int(offset)));
            // Never a move: some file managers would take the file out of its project without asking.
            drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
        },
        Qt::QueuedConnection);
}

} // namespace lumbra
