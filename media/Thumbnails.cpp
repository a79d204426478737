// SPDX-License-Identifier: GPL-3.0-or-later
#include "Thumbnails.h"

#include "Blur.h"
#include "platform/Tasks.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include <algorithm>
#include <limits>

namespace lumbra {

namespace {

// Two bounds in one: a picture costs its bytes, and at least as much as leaves room for this many.
constexpr qsizetype largestCount = 4000;
constexpr qsizetype largestBytes = 192 * 1024 * 1024;

qsizetype costOf(const QImage& image) {
    return std::max<qsizetype>(image.sizeInBytes(), largestBytes / largestCount + 1);
}

// The date in the key gives a file that was rewritten in place a picture of its own.
QString backdropKey(const Asset& asset) {
    return asset.url.toString() + u'|' + QString::number(asset.modified.seconds, 'g', QLocale::FloatingPointShortest);
}

QString imageKey(const Asset& asset, double size) {
    return backdropKey(asset) + u'|' + QString::number(qint64(size));
}

QImage kept(const QCache<QString, QImage>& cache, const QString& key) {
    const QImage* const image = cache.object(key);
    return image ? *image : QImage();
}

} // namespace

Thumbnails::Thumbnails(Reader& reader, QObject* parent) : QObject(parent), m_reader(reader) {
    m_cache.setMaxCost(largestBytes);
    m_backdrops.setMaxCost(std::numeric_limits<qsizetype>::max());
}

Thumbnails& Thumbnails::shared() {
    static auto* const one = new Thumbnails(Reader::shared()); // static objects may outlive the application's
    return *one;
}

int Thumbnails::bucket(double size) {
    return size <= 140 ? 140 : size <= 240 ? 240 : 420;
}

double Thumbnails::scale() {
    return qGuiApp->devicePixelRatio();
}

QImage Thumbnails::peek(const Asset& asset, double size) const {
    return kept(m_cache, imageKey(asset, size));
}

QImage Thumbnails::peekBackdrop(const Asset& asset) const {
    return kept(m_backdrops, backdropKey(asset));
}

Thumbnails::Request Thumbnails::image(const Asset& asset, double size, Reader::Urgency urgency, QObject* context,
                                      Ready ready) {
    if (const QImage known = peek(asset, size); !known.isNull()) {
        ready(known);
        return {};
    }
    const int pixels = int(std::lround(size * scale()));
    const QFuture<QImage> future = m_reader.thumbnail(asset.url, QSize(pixels, pixels), urgency);
    Tasks::Task<QImage>(future).then(this, [this, key = imageKey(asset, size), receiver = QPointer<QObject>(context),
                                            ready = std::move(ready), future](const QImage& image) {
        if (!image.isNull())
            m_cache.insert(key, new QImage(image), costOf(image));
        if (receiver && !future.isCanceled())
            ready(image);
    });
    return Request(future);
}

void Thumbnails::backdrop(const Asset& asset, const QImage& image, QObject* context, Ready ready) {
    if (const QImage known = peekBackdrop(asset); !known.isNull() || image.isNull()) {
        ready(known);
        return;
    }
    Tasks::run(Tasks::Pool::utility, [image] { return blurredBackdrop(image); })
        .then(this, [this, key = backdropKey(asset), receiver = QPointer<QObject>(context),
                     ready = std::move(ready)](const QImage& made) {
            m_backdrops.insert(key, new QImage(made), costOf(made));
            if (receiver)
                ready(made);
        });
}

} // namespace lumbra
