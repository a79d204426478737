// SPDX-License-Identifier: GPL-3.0-or-later
#include "Reader.h"

#include "reader/Pool.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPromise>

#include <algorithm>
#include <climits>
#include <cmath>

namespace lumbra {

namespace {

// Takes the pixels over as they are.
QImage picture(const std::optional<reader::Found>& found) {
    if (!found)
        return {};
    const auto facts = reader::decodedPictureFacts(found->details, found->bulk.size());
    if (!facts)
        return {};
    auto* const pixels = new QByteArray(found->bulk);
    const auto release = [](void* bytes) { delete static_cast<QByteArray*>(bytes); };
    return QImage(reinterpret_cast<const uchar*>(pixels->constData()), facts->size.width(), facts->size.height(),
                  facts->size.width() * qsizetype(4),
                  facts->opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied, release, pixels);
}

reader::Pool::Options poolOptions(const Reader::Options& options) {
    return {.child = {.program = options.program.isEmpty() ? Reader::installedProgram() : options.program,
                      .idlePriority = options.idlePriority},
            .children = size_t(std::max(1, options.children))};
}

} // namespace

Reader::Reader() : Reader(Options{}) {}

Reader::Reader(const Options& options)
    : m_limit(quint32(std::lround(options.limit * 1000))),
      m_pool(std::make_unique<reader::Pool>(poolOptions(options))) {}

Reader::~Reader() = default;

Reader& Reader::shared() {
    // Never destroyed: what is drawn last may still ask. The processes end with this one.
    static auto* const reader = new Reader;
    return *reader;
}

Tasks::Task<QImage> Reader::thumbnail(const Location& file, QSize box, Urgency urgency, std::stop_token stop) {
    const QSize bounded = box.expandedTo({1, 1}).boundedTo({reader::longestSide, reader::longestSide});
    const auto promise = std::make_shared<QPromise<QImage>>();
    promise->start();
    Tasks::Task<QImage> task(promise->future());
    if (!file.path().startsWith('/') || file.path().size() >= PATH_MAX) {
        promise->addResult(QImage());
        promise->finish();
        return task;
    }
    reader::Job job;
    job.request.kind = reader::Kind::thumbnail;
    job.request.limit = m_limit;
    job.request.path = file.path();
    job.request.details = encoded(reader::PictureBox{bounded});
    job.isCancelled = [stop = std::move(stop)] { return stop.stop_requested(); };
    job.makesSense = [](const reader::Found& found) {
        return reader::decodedPictureFacts(found.details, found.bulk.size()).has_value();
    };
    job.deliver = [promise](const std::optional<reader::Found>& found) {
        promise->addResult(picture(found));
        promise->finish();
    };
    m_pool->ask(size_t(urgency), std::move(job));
    return task;
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
