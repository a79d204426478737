// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaAnswers.h"

#include "FilmPicture.h"
#include "Loudness.h"
#include "SingleFrame.h"
#include "reader/PictureBytes.h"

#include <cstring>

namespace lumbra::reader {

namespace {

std::chrono::milliseconds limitOf(const Request& request) {
    return std::chrono::milliseconds(request.limit);
}

} // namespace

QImage MediaAnswers::filmPicture(OpenedFile& file, QSize box, std::chrono::milliseconds limit) {
    return reader::filmPicture(file, box, limit);
}

QImage MediaAnswers::framePicture(OpenedFile& file, QSize box) {
    return reader::framePicture(file, box);
}

QByteArray MediaAnswers::cover(const OpenedFile& file, std::chrono::milliseconds limit) {
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limit);
    return media ? media->cover() : QByteArray();
}

Answer MediaAnswers::facts(const Request& request, const OpenedFile& file) {
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limitOf(request));
    if (!media)
        return {};
    const MediaFacts facts{media->findDuration(), media->pictures() != nullptr, media->sound() != nullptr};
    if (!facts.hasPictures && !facts.hasSound)
        return {};
    return {.found = true, .details = encoded(facts)};
}

Answer MediaAnswers::frames(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) {
    const std::optional<FramesWish> wish = decodedFramesWish(request.details);
    const std::optional<FilmFrames::Made> made =
        wish ? m_frames.make(std::move(file), *wish, limitOf(request)) : std::nullopt;
    if (!made)
        return {};
    FramesFacts facts{.frames = {}, .isWhole = made->isWhole};
    size_t used = 0;
    for (const QImage& image : made->images) {
        facts.frames.append(PictureBytes::facts(image));
        used += PictureBytes::write(image, arena.subspan(used));
    }
    return {.found = true, .details = encoded(facts), .bulk = quint32(used)};
}

Answer MediaAnswers::loudness(const Request& request, const OpenedFile& file, std::span<uchar> arena) {
    const std::optional<LoudnessWish> wish = decodedLoudnessWish(request.details);
    const QList<float> values = wish ? reader::loudness(file, wish->count, limitOf(request)) : QList<float>();
    if (values.isEmpty())
        return {};
    const auto bytes = size_t(values.size()) * sizeof(float);
    std::memcpy(arena.data(), values.constData(), bytes);
    return {.found = true, .details = {}, .bulk = quint32(bytes)};
}

} // namespace lumbra::reader
