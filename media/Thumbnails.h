// The one place that turns an asset into a small picture: asks the reader process, and keeps what it gave in memory,
// along with the blurred backdrop of each picture. Nothing is written to disk, and a miss is always answered by asking
// again.
//
// Sizes are in points, the longest side that a picture may have; pixels are points times `scale`. To peek is for any
// thread, to ask for the main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaRequest.h"
#include "PictureCache.h"
#include "RegisteredThumbnails.h"
#include "library/Model.h"
#include "platform/Reader.h"

#include <QImage>
#include <QObject>

#include <functional>

namespace lumbra {

class Thumbnails : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const QImage&)>;

    // Bounds of the thumbnails kept, whichever is reached first.
    static constexpr qsizetype largestCount = 4000;
    static constexpr qsizetype largestBytes = 192 * 1024 * 1024;

    using Request = MediaRequest;

    explicit Thumbnails(Reader& reader, QObject* parent = nullptr);

    // The process-wide one, over Reader::shared().
    static Thumbnails& shared();

    // Near sizes share their pictures: 140, 240 or 420.
    static int bucket(double size);

    // Pixels a point on the screen with the finest ones, so that no screen shows a picture enlarged.
    static double scale();

    // What a picture is kept under: the file, when it was written, and the size without its fraction. A file that is
    // rewritten in place gets a new key by that, and the old entry ages out. One backdrop serves all sizes.
    static QString imageKey(const Asset& asset, double size);
    static QString backdropKey(const Asset& asset);

    // What is there already; a null image if nothing is.
    QImage peek(const Asset& asset, double size) { return m_cache.find(imageKey(asset, size)); }
    QImage peekBackdrop(const Asset& asset) { return m_backdrops.find(backdropKey(asset)); }

    // Makes the picture, keeps it, and hands it to `ready`, unless the request or the context has gone by then; at once
    // if it is there. The image is null if the file yields none; that is not remembered, and the next request tries
    // again.
    [[nodiscard]] Request imageFor(const Asset& asset, double size, Reader::Urgency urgency, QObject* context,
                                   Ready ready);

    // The same for the backdrop of a picture that is there, which somebody looks at by then.
    void backdropFor(const Asset& asset, const QImage& image, QObject* context, Ready ready);

private:
    Reader& m_reader;
    RegisteredThumbnails m_registered{m_reader};
    PictureCache m_cache{largestBytes, largestCount};
    PictureCache m_backdrops{16 * 1024 * 1024}; // some 7,000 of them
};

} // namespace lumbra
