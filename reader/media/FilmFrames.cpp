// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmFrames.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumbra::reader {

namespace {

// Of the time of a request: the rest is for scaling and answering, so that late frames cost no early ones.
constexpr double decodingShare = 0.9;

// Moments fall on these parts of a second.
constexpr double timescale = 600;

QList<double> secondsOf(const FramesWish& wish, double duration) {
    QList<double> times = wish.moments;
    for (double& time : times) {
        if (wish.unit == FramesWish::Unit::durations)
            time *= duration;
        time = std::round(time * timescale) / timescale;
    }
    return times;
}

// The tolerance of one of the times, in order: frames of neighbouring times are not to be the same where the film
// moves.
double toleranceAt(const QList<double>& times, qsizetype place, double tolerance) {
    constexpr double share = 0.45; // of the way to a neighbour
    if (place > 0)
        tolerance = std::min(tolerance, std::abs(times[place] - times[place - 1]) * share);
    if (place + 1 < times.size())
        tolerance = std::min(tolerance, std::abs(times[place + 1] - times[place]) * share);
    return tolerance;
}

QImage screenFormat(const QImage& image) {
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

} // namespace

std::optional<FilmFrames::Made> FilmFrames::make(std::unique_ptr<OpenedFile> file, const FramesWish& wish,
                                                 std::chrono::milliseconds limit) {
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(limit * decodingShare);
    std::optional<Film> film = std::exchange(m_kept, std::nullopt);
    if (film && film->file->identity() == file->identity())
        film->media->allow(time);
    else if (film = open(std::move(file), time); !film)
        return std::nullopt;
    const bool needsDuration = wish.unit == FramesWish::Unit::durations;
    const double duration = needsDuration ? film->media->findDuration() : 0;
    if (needsDuration && duration <= 0)
        return std::nullopt;

    const QList<double> times = secondsOf(wish, duration);
    Made made{.images = {}, .isWhole = true};
    qsizetype room = arenaSize;
    for (qsizetype i = 0; i < times.size() && !film->media->isOver(); ++i) {
        if (!film->decoder->show(times[i], toleranceAt(times, i, wish.tolerance)))
            continue;
        const QImage frame = screenFormat(film->decoder->picture(wish.box));
        room -= frame.sizeInBytes();
        if (!frame.isNull() && room >= 0)
            made.images.append(frame);
    }
    made.isWhole = made.images.size() == times.size() || !film->media->isOver();
    if (wish.keepsOpen)
        m_kept = std::move(film);
    return made;
}

std::optional<FilmFrames::Film> FilmFrames::open(std::unique_ptr<OpenedFile> file, std::chrono::milliseconds limit) {
    Film film{.file = std::move(file), .media = nullptr, .decoder = nullptr};
    film.media = MediaFile::open(*film.file, limit);
    film.decoder = film.media ? VideoDecoder::open(*film.media) : nullptr;
    if (!film.decoder)
        return std::nullopt;
    return film;
}

} // namespace lumbra::reader
