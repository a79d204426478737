// Frames of films at given moments. The film asked for last may stay open, so that a pointer moving along it need not
// wait for it to be opened time and again.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VideoDecoder.h"
#include "platform/reader/Protocol.h"

#include <QImage>
#include <QList>

#include <chrono>
#include <memory>
#include <optional>

namespace lumbra::reader {

class FilmFrames {
public:
    struct Made {
        QList<QImage> images; // as Pictures::thumbnail makes them
        bool isWhole;         // false: the time was over before all moments were tried
    };

    // Those of the wished that can be had while there is time; absent when the file has no moving pictures, or does not
    // tell how long it is though the moments depend on it.
    std::optional<Made> make(std::unique_ptr<OpenedFile> file, const FramesWish& wish, std::chrono::milliseconds limit);

private:
    // In the order in which they depend on each other.
    struct Film {
        std::unique_ptr<OpenedFile> file;
        std::unique_ptr<MediaFile> media;
        std::unique_ptr<VideoDecoder> decoder;
    };

    static std::optional<Film> open(std::unique_ptr<OpenedFile> file, std::chrono::milliseconds limit);

    std::optional<Film> m_kept;
};

} // namespace lumbra::reader
