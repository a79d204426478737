// SPDX-License-Identifier: GPL-3.0-or-later
#include "Reader.h"

#include "reader/Pool.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace lumbra {

namespace {

// The picture at this place in the bytes, which it keeps alive.
QImage picture(const reader::PictureFacts& facts, const QByteArray& bytes, qsizetype place = 0) {
    auto* const pixels = new QByteArray(bytes);
    const auto release = [](void* kept) { delete static_cast<QByteArray*>(kept); };
    return QImage(reinterpret_cast<const uchar*>(pixels->constData()) + place, facts.size.width(), facts.size.height(),
                  facts.size.width() * qsizetype(4),
                  facts.opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied, release, pixels);
}

bool isInside(QSize size, QSize box) {
    return size.width() <= box.width() && size.height() <= box.height();
}

QSize bounded(QSize box) {
    return box.expandedTo({1, 1}).boundedTo({reader::longestSide, reader::longestSide});
}

// A root mean square of samples of 16 bits.
bool isLoudness(float value) {
    return value >= 0 && value <= 32768;
}

std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

reader::Pool::Options poolOptions(const Reader::Options& options) {
    return {.child = {.program = options.program.isEmpty() ? Reader::installedProgram() : options.program,
                      .idlePriority = options.idlePriority},
            .children = size_t(std::max(1, options.children)),
            .idleLimit = milliseconds(options.idleLimit)};
}

} // namespace

Reader::Reader() : Reader(Options{}) {}

Reader::Reader(const Options& options)
    : m_limit(quint32(milliseconds(options.limit).count())),
      m_pool(std::make_unique<reader::Pool>(poolOptions(options))) {}

Reader::~Reader() = default;

Reader& Reader::shared() {
    // Never destroyed: what is drawn last may still ask. The processes end with this one.
    static auto* const reader = new Reader;
    return *reader;
}

Reader& Reader::lasting() {
    static auto* const reader = new Reader({.limit = 60, .idleLimit = 30});
    return *reader;
}

template <typename Value>
Tasks::Task<Value> Reader::ask(reader::Kind kind, const Location& file, QByteArray details, Urgency urgency,
                               std::stop_token stop, std::function<bool(const reader::Found&)> makesSense,
                               Reading<Value> read) {
    const auto promise = std::make_shared<Tasks::Promise<Value>>();
    Tasks::Task<Value> task = promise->task();
    const auto deliver = [promise, read = std::move(read)](const std::optional<reader::Found>& found) {
        promise->give(read(found));
    };
    if (!file.path().startsWith('/') || file.path().size() >= PATH_MAX) {
        deliver(std::nullopt);
        return task;
    }
    reader::Job job;
    job.request.kind = kind;
    job.request.limit = m_limit;
    job.request.path = file.path();
    job.request.details = std::move(details);
    job.isCancelled = [stop = std::move(stop)] { return stop.stop_requested(); };
    job.makesSense = std::move(makesSense);
    job.deliver = deliver;
    m_pool->ask(size_t(urgency), std::move(job));
    return task;
}

Tasks::Task<QImage> Reader::thumbnail(const Location& file, QSize box, Urgency urgency, std::stop_token stop) {
    const auto facts = [](const reader::Found& found) {
        return reader::decodedPictureFacts(found.details, found.bulk.size());
    };
    return ask<QImage>(
        reader::Kind::thumbnail, file, encoded(reader::PictureBox{bounded(box)}), urgency, std::move(stop),
        [facts](const reader::Found& found) { return facts(found).has_value(); },
        [facts](const std::optional<reader::Found>& found) {
            return found ? picture(*facts(*found), found->bulk) : QImage();
        });
}

Tasks::Task<QSize> Reader::pixels(const Location& file, Urgency urgency, std::stop_token stop) {
    return ask<QSize>(
        reader::Kind::pixels, file, {}, urgency, std::move(stop),
        [](const reader::Found& found) { return reader::decodedPixelSize(found.details) && found.bulk.isEmpty(); },
        [](const std::optional<reader::Found>& found) {
            return found ? reader::decodedPixelSize(found->details)->size : QSize();
        });
}

Tasks::Task<std::optional<Reader::MediaFacts>> Reader::mediaFacts(const Location& file, Urgency urgency,
                                                                  std::stop_token stop) {
    return ask<std::optional<MediaFacts>>(
        reader::Kind::mediaFacts, file, {}, urgency, std::move(stop),
        [](const reader::Found& found) { return reader::decodedMediaFacts(found.details) && found.bulk.isEmpty(); },
        [](const std::optional<reader::Found>& found) {
            return found ? reader::decodedMediaFacts(found->details) : std::nullopt;
        });
}

Tasks::Task<std::optional<Reader::Frames>> Reader::frames(const Location& file, FramesWish wish, Urgency urgency,
                                                          std::stop_token stop) {
    wish.box = bounded(wish.box);
    const auto isMuch = [](const QList<reader::PictureFacts>& frames, const FramesWish& asked) {
        return frames.size() > asked.moments.size()
               || std::any_of(frames.begin(), frames.end(),
                              [&asked](const reader::PictureFacts& facts) { return !isInside(facts.size, asked.box); });
    };
    return ask<std::optional<Frames>>(
        reader::Kind::frames, file, encoded(wish), urgency, std::move(stop),
        [wish, isMuch](const reader::Found& found) {
            const auto facts = reader::decodedFramesFacts(found.details, found.bulk.size());
            return facts && !isMuch(facts->frames, wish);
        },
        [](const std::optional<reader::Found>& found) -> std::optional<Frames> {
            if (!found)
                return std::nullopt;
            const auto facts = reader::decodedFramesFacts(found->details, found->bulk.size());
            Frames frames{.images = {}, .isWhole = facts->isWhole};
            qsizetype place = 0;
            for (const reader::PictureFacts& frame : facts->frames) {
                frames.images.append(picture(frame, found->bulk, place));
                place += frames.images.last().sizeInBytes();
            }
            return frames;
        });
}

Tasks::Task<QList<float>> Reader::loudness(const Location& file, int count, Urgency urgency, std::stop_token stop) {
    const int bars = std::clamp(count, 1, reader::mostBars);
    const auto floats = [](const QByteArray& bytes) {
        QList<float> values(bytes.size() / qsizetype(sizeof(float)));
        std::memcpy(values.data(), bytes.constData(), size_t(values.size()) * sizeof(float));
        return values;
    };
    return ask<QList<float>>(
        reader::Kind::loudness, file, encoded(reader::LoudnessWish{bars}), urgency, std::move(stop),
        [bars, floats](const reader::Found& found) {
            const QList<float> values = floats(found.bulk);
            return found.bulk.size() == bars * qsizetype(sizeof(float))
                   && std::all_of(values.begin(), values.end(), isLoudness);
        },
        [floats](const std::optional<reader::Found>& found) { return found ? floats(found->bulk) : QList<float>(); });
}

Tasks::Task<std::optional<Reader::Pages>> Reader::pages(const Location& file, Urgency urgency, std::stop_token stop) {
    const auto sizes = [](const QByteArray& bytes) {
        QList<QSizeF> made;
        for (const char* at = bytes.constData(); at < bytes.constData() + bytes.size(); at += 2 * sizeof(float)) {
            float sides[2];
            std::memcpy(sides, at, sizeof sides);
            made.append(QSizeF(double(sides[0]), double(sides[1])));
        }
        return made;
    };
    const auto isPage = [](const QSizeF& size) {
        return std::isfinite(size.width()) && size.width() >= 1 && std::isfinite(size.height()) && size.height() >= 1;
    };
    return ask<std::optional<Pages>>(
        reader::Kind::pages, file, {}, urgency, std::move(stop),
        [sizes, isPage](const reader::Found& found) {
            if (!reader::decodedPagesFacts(found.details, found.bulk.size()))
                return false;
            const QList<QSizeF> pages = sizes(found.bulk);
            return std::all_of(pages.begin(), pages.end(), isPage);
        },
        [sizes](const std::optional<reader::Found>& found) -> std::optional<Pages> {
            if (!found)
                return std::nullopt;
            return Pages{.sizes = sizes(found->bulk),
                         .isLocked = reader::decodedPagesFacts(found->details, found->bulk.size())->isLocked};
        });
}

Tasks::Task<QImage> Reader::page(const Location& file, const PageWish& wish, Urgency urgency, std::stop_token stop) {
    const auto facts = [](const reader::Found& found) {
        return reader::decodedPictureFacts(found.details, found.bulk.size());
    };
    return ask<QImage>(
        reader::Kind::page, file, encoded(wish), urgency, std::move(stop),
        [facts, size = wish.part.size()](const reader::Found& found) {
            const std::optional<reader::PictureFacts> made = facts(found);
            return made && made->size == size && made->opaque;
        },
        [facts](const std::optional<reader::Found>& found) {
            return found ? picture(*facts(*found), found->bulk) : QImage();
        });
}

Tasks::Task<Reader::PageText> Reader::pageText(const Location& file, const PageTextWish& wish, Urgency urgency,
                                               std::stop_token stop) {
    constexpr qsizetype sizeOfPlace = 4 * sizeof(float);
    const auto facts = [](const reader::Found& found) {
        return reader::decodedPageTextFacts(found.details, found.bulk.size());
    };
    return ask<PageText>(
        reader::Kind::pageText, file, encoded(wish), urgency, std::move(stop),
        [facts](const reader::Found& found) { return facts(found).has_value(); },
        [facts](const std::optional<reader::Found>& found) {
            PageText text;
            if (!found)
                return text;
            const qsizetype places = facts(*found)->places;
            for (qsizetype i = 0; i < places; ++i) {
                float place[4];
                std::memcpy(place, found->bulk.constData() + i * sizeOfPlace, sizeof place);
                if (std::all_of(std::begin(place), std::end(place), [](float side) { return std::isfinite(side); }))
                    text.places.append(QRectF(double(place[0]), double(place[1]), double(place[2]), double(place[3])));
            }
            text.words = QString::fromUtf8(QByteArrayView(found->bulk).sliced(places * sizeOfPlace));
            return text;
        });
}

void Reader::warmUp() {
    m_pool->warmUp();
}

size_t Reader::startedCount() const {
    return m_pool->startedCount();
}

QByteArray Reader::installedProgram() {
    const QByteArray told = qgetenv("LUMBRA_READER");
    if (!told.isEmpty())
        return told;
    const QString here = QCoreApplication::applicationDirPath();
    for (const QLatin1String place : {QLatin1String("/lumbra-reader"), QLatin1String("/../libexec/lumbra-reader")}) {
        const QFileInfo candidate(here + place);
        if (candidate.isExecutable())
            return candidate.canonicalFilePath().toUtf8();
    }
    return {};
}

} // namespace lumbra
