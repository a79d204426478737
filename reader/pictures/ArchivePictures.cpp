// Documents that are archives: the picture of itself that the program that wrote one left in it, or else its first
// lines as a page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Archive.h"
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "OfficeText.h"

#include <array>
#include <cstdlib>

namespace lumbra::reader {

namespace {

// Where programs put them; the larger ones first.
constexpr std::array previews{
    "preview.jpg",              // pages, numbers, key
    "QuickLook/Thumbnail.jpg",  // the same, some years ago
    "QuickLook/Preview.pdf",    //
    "preview-web.jpg",          //
    "preview-micro.jpg",        //
    "docProps/thumbnail.jpeg",  // docx, pptx, xlsx
    "docProps/thumbnail.jpg",   //
    "docProps/thumbnail.png",   //
    "Thumbnails/thumbnail.png", // odt, ods, odp
    "previews/preview.png",     // sketch
    "thumbnail.png",            // fig
};

// Of one colour: libraries that write documents leave the blank page of their template in them.
bool isBlank(const QImage& image) {
    constexpr int tolerance = 6;
    const QImage plain = image.convertToFormat(QImage::Format_RGB32);
    const QRgb first = plain.pixel(0, 0);
    for (int y = 0; y < plain.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(plain.constScanLine(y));
        for (int x = 0; x < plain.width(); ++x) {
            if (std::abs(qRed(row[x]) - qRed(first)) > tolerance || std::abs(qGreen(row[x]) - qGreen(first)) > tolerance
                || std::abs(qBlue(row[x]) - qBlue(first)) > tolerance)
                return false;
        }
    }
    return true;
}

} // namespace

QImage archivePicture(OpenedFile& file, QSize box, Milliseconds) {
    const std::unique_ptr<Archive> archive = Archive::open(file);
    if (!archive)
        return {};
    for (const char* name : previews) {
        const QImage image = embeddedPicture(archive->entry(name, previewLimit), box);
        if (!image.isNull() && !isBlank(image))
            return image;
    }
    return {};
}

QImage officePicture(OpenedFile& file, QSize box, Milliseconds) {
    const std::unique_ptr<Archive> archive = Archive::open(file);
    if (!archive)
        return {};
    const QList<QStringList> rows = officeTable(*archive);
    return rows.isEmpty() ? textPage(officeText(*archive), box) : tablePage(rows, box);
}

} // namespace lumbra::reader
