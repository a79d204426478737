// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageAnswers.h"

#include "PdfPage.h"
#include "PdfText.h"
#include "reader/Formats.h"
#include "reader/Interruption.h"
#include "reader/PictureBytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lumbra::reader {

namespace {

// What a page without a sensible size is taken for: a sheet of letter paper, in points.
constexpr QSizeF usualPage(612, 792);

// No sheet is larger; what claims to be is drawn smaller.
constexpr double largestSide = 100'000;

float side(double points) {
    return float(std::clamp(points, 1.0, largestSide));
}

} // namespace

QPdfDocument* PageAnswers::documentOf(std::unique_ptr<OpenedFile> file) {
    if (m_kept.file && m_kept.file->identity() == file->identity())
        return m_kept.document.get();
    m_kept.document.reset();
    m_kept.file.reset();
    if (formatOf(file->head(), file->extension()) != Format::pdf)
        return nullptr;
    auto document = std::make_unique<QPdfDocument>();
    document->load(&file->device());
    m_kept = {std::move(file), std::move(document)};
    return m_kept.document.get();
}

Answer PageAnswers::pages(std::unique_ptr<OpenedFile> file, std::span<uchar> arena) {
    QPdfDocument* const document = documentOf(std::move(file));
    if (!document)
        return {};
    if (document->error() == QPdfDocument::Error::IncorrectPassword)
        return {.found = true, .details = encoded(PagesFacts{.count = 0, .isLocked = true})};
    const int count = std::min(document->pageCount(), mostPages);
    if (document->status() != QPdfDocument::Status::Ready || count < 1)
        return {};
    uchar* to = arena.data();
    for (int page = 0; page < count; ++page) {
        if (Interruption::isRequested())
            return {};
        const QSizeF told = document->pagePointSize(page);
        const bool isSensible = std::isfinite(told.width()) && std::isfinite(told.height()) && !told.isEmpty();
        const QSizeF size = isSensible ? told : usualPage;
        const float sides[] = {side(size.width()), side(size.height())};
        std::memcpy(to, sides, sizeof sides);
        to += sizeof sides;
    }
    return {.found = true,
            .details = encoded(PagesFacts{.count = count, .isLocked = false}),
            .bulk = quint32(to - arena.data())};
}

Answer PageAnswers::page(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) {
    const std::optional<PageWish> wish = decodedPageWish(request.details);
    QPdfDocument* const document = wish ? documentOf(std::move(file)) : nullptr;
    if (!document || document->status() != QPdfDocument::Status::Ready || wish->page >= document->pageCount())
        return {};
    const QImage picture = pdfPage(*document, wish->page, wish->whole, wish->part);
    const size_t bytes = PictureBytes::write(picture, arena);
    if (bytes == 0)
        return {};
    return {.found = true, .details = encoded(PictureBytes::facts(picture)), .bulk = quint32(bytes)};
}

Answer PageAnswers::text(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) {
    using Grain = PageTextWish::Grain;
    const std::optional<PageTextWish> wish = decodedPageTextWish(request.details);
    QPdfDocument* const document = wish ? documentOf(std::move(file)) : nullptr;
    if (!document || document->status() != QPdfDocument::Status::Ready || wish->page >= document->pageCount())
        return {};
    const PdfText found = wish->grain == Grain::page
                              ? pdfText(*document, wish->page)
                              : pdfText(*document, wish->page, wish->from, wish->to, wish->grain == Grain::words);
    const qsizetype places = std::min(found.places.size(), qsizetype(mostPlaces));
    const QByteArray words = found.words.toUtf8();
    QByteArray bulk;
    bulk.reserve(places * 4 * qsizetype(sizeof(float)) + words.size());
    for (const QRectF& place : found.places.first(places))
        for (const double side : {place.x(), place.y(), place.width(), place.height()}) {
            const auto written = float(side);
            bulk.append(reinterpret_cast<const char*>(&written), sizeof written);
        }
    bulk += words;
    if (bulk.size() > qsizetype(arena.size()))
        return {};
    std::memcpy(arena.data(), bulk.constData(), size_t(bulk.size()));
    return {.found = true, .details = encoded(PageTextFacts{int(places)}), .bulk = quint32(bulk.size())};
}

} // namespace lumbra::reader
