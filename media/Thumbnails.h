// The one place that turns an asset into a small picture: asks the reader process, and keeps what it gave in memory,
// along with the blurred backdrop of each picture. Nothing is written to disk, and a miss is always answered by asking
// again.
//
// Main thread. Sizes are in points, the longest side that a picture may have; pixels are points times `scale`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "platform/Reader.h"

#include <QCache>
#include <QFuture>
#include <QImage>
#include <QObject>

#include <functional>

namespace lumbra {

class Thumbnails : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const QImage&)>;

    // A picture under way; takes the request back when it goes.
    class Request {
    public:
        Request() = default;
        explicit Request(QFuture<QImage> future) : m_future(std::move(future)) {}
        ~Request() { m_future.cancel(); }
        Request(Request&& other) noexcept : m_future(std::exchange(other.m_future, {})) {}
        Request& operator=(Request&& other) noexcept {
            m_future.cancel();
            m_future = std::exchange(other.m_future, {});
            return *this;
        }

    private:
        QFuture<QImage> m_future;
    };

    explicit Thumbnails(Reader& reader, QObject* parent = nullptr);

    // The process-wide one, over Reader::shared().
    static Thumbnails& shared();

    // Near sizes share their pictures: 140, 240 or 420.
    static int bucket(double size);

    // Pixels a point on the screen with the finest ones, so that no screen shows a picture enlarged.
    static double scale();

    // What is there already; a null image if nothing is.
    QImage peek(const Asset& asset, double size) const;
    QImage peekBackdrop(const Asset& asset) const;

    // Makes the picture, keeps it, and hands it to `ready`, unless the request or the context has gone by then. The
    // image is null if the file yields none; that is not remembered, and the next request tries again.
    [[nodiscard]] Request image(const Asset& asset, double size, Reader::Urgency urgency, QObject* context,
                                Ready ready);

    // The same for the backdrop of a picture that is there.
    void backdrop(const Asset& asset, const QImage& image, QObject* context, Ready ready);

private:
    Reader& m_reader;
    QCache<QString, QImage> m_cache;
    QCache<QString, QImage> m_backdrops;
};

} // namespace lumbra
