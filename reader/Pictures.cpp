// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pictures.h"

#include "Formats.h"
#include "pictures/Makers.h"

#include <QThreadPool>

#include <array>

namespace lumbra::reader::Pictures {

namespace {

struct Row {
    Format format;
    QImage (*make)(OpenedFile& file, QSize box, Milliseconds limit);
};

// What one maker can't read, the next one of the format may.
constexpr std::array makers{
    Row{Format::jpeg, jpegPicture},
    Row{Format::jpeg, modernPicture},
    Row{Format::png, rasterPicture},
    Row{Format::png, modernPicture},
    Row{Format::webp, webpPicture},
    Row{Format::webp, modernPicture},
    Row{Format::simpleImage, rasterPicture},
    Row{Format::simpleImage, modernPicture},
    Row{Format::modernImage, modernPicture},
    Row{Format::codecImage, codecPicture},
    Row{Format::photoshop, photoshopPicture},
    Row{Format::raw, rawPicture},
    Row{Format::raw, rasterPicture},
    Row{Format::svg, drawingPicture},
    Row{Format::packedSvg, packedDrawingPicture},
    Row{Format::pdf, pagePicture},
    Row{Format::postscript, postscriptPicture},
    Row{Format::video, videoPicture},
    Row{Format::video, coverPicture},
    Row{Format::audio, coverPicture},
    Row{Format::audio, videoPicture},
    Row{Format::archive, archivePicture},
    Row{Format::archive, officePicture},
    Row{Format::archive, animationPicture},
    Row{Format::blend, blendPicture},
    Row{Format::plainText, plainTextPicture},
    Row{Format::sourceText, sourceTextPicture},
    Row{Format::markdown, markdownPicture},
    Row{Format::webPage, webPagePicture},
    Row{Format::table, tablePicture},
    Row{Format::subtitles, subtitlesPicture},
    Row{Format::richText, richTextPicture},
};

} // namespace

QImage thumbnail(OpenedFile& file, QSize box, std::chrono::milliseconds limit) {
    const Format format = formatOf(file.head(), file.extension());
    const auto end = std::chrono::steady_clock::now() + limit;
    for (const Row& row : makers) {
        const auto left = std::chrono::ceil<Milliseconds>(end - std::chrono::steady_clock::now());
        if (row.format != format || left.count() <= 0)
            continue;
        const QImage image = row.make(file, box, left);
        if (!image.isNull())
            return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                                 : QImage::Format_RGB32);
    }
    return {};
}

QSize pixels(OpenedFile& file) {
    switch (formatOf(file.head(), file.extension())) {
    case Format::jpeg:
    case Format::png:
    case Format::simpleImage: {
        const QSize size = rasterPixels(file);
        return size.isEmpty() ? vipsPixels(file) : size;
    }
    case Format::webp: // whose turn Qt does not tell
    case Format::modernImage:
        return vipsPixels(file);
    case Format::photoshop:
        return photoshopPixels(file);
    default:
        return {};
    }
}

void warmUp() {
    // One request, one thread: the pool of readers is what works side by side.
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
}

} // namespace lumbra::reader::Pictures
