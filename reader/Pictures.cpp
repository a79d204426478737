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

constexpr std::array makers{
    Row{Format::jpeg, jpegPicture},          Row{Format::png, rasterPicture},         Row{Format::webp, webpPicture},
    Row{Format::simpleImage, rasterPicture}, Row{Format::modernImage, modernPicture}, Row{Format::svg, drawingPicture},
    Row{Format::pdf, pagePicture},           Row{Format::video, videoPicture},
};

} // namespace

QImage thumbnail(OpenedFile& file, QSize box, std::chrono::milliseconds limit) {
    const Format format = formatOf(file.head(), file.extension());
    for (const Row& row : makers) {
        if (row.format != format)
            continue;
        const QImage image = row.make(file, box, limit);
        if (image.isNull())
            return {};
        return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                             : QImage::Format_RGB32);
    }
    return {};
}

void warmUp() {
    // One request, one thread: the pool of readers is what works side by side.
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
}

} // namespace lumbra::reader::Pictures
