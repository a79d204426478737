// SPDX-License-Identifier: GPL-3.0-or-later
#include "Thumbnails.h"

#include "AssetKey.h"
#include "Blur.h"
#include "platform/Tasks.h"

#include <QGuiApplication>
#include <QPointer>

#include <cmath>

namespace lumbra {

Thumbnails::Thumbnails(Reader& reader, QObject* parent) : QObject(parent), m_reader(reader) {}

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

QString Thumbnails::backdropKey(const Asset& asset) {
    return assetKey(asset);
}

QString Thumbnails::imageKey(const Asset& asset, double size) {
    return backdropKey(asset) + u'|' + QString::number(qint64(size));
}

Thumbnails::Request Thumbnails::imageFor(const Asset& asset, double size, Reader::Urgency urgency, QObject* context,
                                         Ready ready) {
    if (const QImage known = peek(asset, size); !known.isNull()) {
        ready(known);
        return {};
    }
    const int pixels = int(std::lround(size * scale()));
    const std::stop_source stop;
    const Ready done = [this, key = imageKey(asset, size), receiver = QPointer<QObject>(context),
                        ready = std::move(ready), token = stop.get_token()](const QImage& image) {
        m_cache.insert(key, image);
        if (receiver && !token.stop_requested())
            ready(image);
    };
    m_reader.thumbnail(asset.url, QSize(pixels, pixels), urgency, stop.get_token())
        .then(this, [this, file = asset.url, pixels, done, token = stop.get_token()](const QImage& image) {
            if (image.isNull())
                m_registered.ask(file, pixels, token, done);
            else
                done(image);
        });
    return Request(stop);
}

void Thumbnails::backdropFor(const Asset& asset, const QImage& image, QObject* context, Ready ready) {
    if (const QImage known = peekBackdrop(asset); !known.isNull() || image.isNull()) {
        ready(known);
        return;
    }
    Tasks::run(Tasks::Pool::userInitiated, [image] { return blurredBackdrop(image); })
        .then(this, [this, key = backdropKey(asset), receiver = QPointer<QObject>(context),
                     ready = std::move(ready)](const QImage& made) {
            m_backdrops.insert(key, made);
            if (receiver)
                ready(made);
        });
}

} // namespace lumbra
